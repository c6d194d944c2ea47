# Completion of cimhttp's command line for fish: commands, options and their values, the names of connections and, when the
# server is quick, of its classes.

# Reads the line up to the cursor. Prints the command, how many arguments follow it, and the first of these or an empty line;
# after record and its file comes another command. The further lines are the options that choose the server.
function __cimhttp_read_line
    set -l command
    set -l argument
    set -l arguments 0
    set -l server
    set -l words (commandline -opc)
    set -l i 2
    while test $i -le (count $words)
        set -l word $words[$i]
        set i (math $i + 1)
        switch $word
            case -c --connection --host --port -n --namespace -u --user --password-file --ca --fingerprint --cert --key
                if test $i -le (count $words); and not test "$word,$command" = --key,instance
                    set -a server $word $words[$i]
                end
                set i (math $i + 1)
            case -o --output --units --timeout --parallel --plugin --log --trace --property --where --sort --limit --class --out \
                    --interval --count --role --result-class --result-role --depth --warning --critical --ignore --listen --modules --suggest --allow-hosts \
                    --web-config --max-series --max-bytes --definitions-ttl
                set i (math $i + 1)
            case '--tls*' '--verify*' '--connection=*' '--host=*' '--port=*' '--namespace=*' '--user=*' '--password-file=*' \
                    '--ca=*' '--fingerprint=*' '--cert=*'
                set -a server $word
            case '-*'
            case '*'
                if test -z "$command"; or test "$command,$arguments" = record,1
                    set command $word
                    set argument
                    set arguments 0
                else
                    test $arguments -gt 0; or set argument $word
                    set arguments (math $arguments + 1)
                end
        end
    end
    printf '%s\n' "$command" $arguments "$argument" $server
end

# Whether the command of the line is one of these.
function __cimhttp_is
    contains -- (__cimhttp_read_line)[1] $argv
end

# Whether the cursor is at the first argument of one of these commands.
function __cimhttp_begins
    set -l line (__cimhttp_read_line)
    test $line[2] -eq 0; and contains -- "$line[1]" $argv
end

# Whether the cursor is where record has another command.
function __cimhttp_has_recording
    set -l line (__cimhttp_read_line)
    test "$line[1],$line[2]" = record,1
end

# Runs a command for what it lists. A server that does not answer within CIMHTTP_COMPLETION_SECONDS, usually 1, completes
# nothing. With its errors discarded, it asks for no password.
function __cimhttp_ask
    # several servers are not asked, whose answers would not be words
    string match -qr -- '(^| )(-c|--connection)[ =][^ ]*[*?,@[]' (string join ' ' -- (__cimhttp_read_line)[4..-1]); and return
    set -l seconds 1
    set -q CIMHTTP_COMPLETION_SECONDS; and set seconds $CIMHTTP_COMPLETION_SECONDS
    timeout $seconds (commandline -opc)[1] (__cimhttp_read_line)[4..-1] $argv 2>/dev/null
end

# The names of classes are asked for again when the line chooses another server than before, or after a minute.
function __cimhttp_classes
    set -l server (__cimhttp_read_line)[4..-1]
    set -l now (date +%s)
    if not set -q __cimhttp_classes_time; or test "$server" != "$__cimhttp_classes_server"; or test (math $now - $__cimhttp_classes_time) -gt 60
        set -g __cimhttp_class_names (__cimhttp_ask classes)
        set -g __cimhttp_classes_server "$server"
        set -g __cimhttp_classes_time $now
    end
    printf '%s\n' $__cimhttp_class_names
end

# The properties of the class that stands before.
function __cimhttp_properties
    set -l class (__cimhttp_read_line)[3]
    test -n "$class"; and __cimhttp_ask class $class --output csv | sed -e 1d -e 's/,.*//'
end

# The properties after those that a list such as Name,Size has already.
function __cimhttp_property_list
    set -l before (string match -r '^(?:--[a-z]+=)?(.*,)' -- (commandline -ct))[2]
    for name in (__cimhttp_properties)
        printf '%s%s\n' "$before" $name
    end
end

function __cimhttp_conditions
    for name in (__cimhttp_properties)
        printf '%s=\n' $name
    end
end

# The names of the keys that the instances of the class have, or the values of one.
function __cimhttp_keys
    set -l class (__cimhttp_read_line)[3]
    test -n "$class"; or return
    set -l keys (__cimhttp_ask instances $class --keys --output plain | sort -u)
    if string match -qr '^(--key=)?[^=]+=' -- (commandline -ct)
        printf '%s\n' $keys
    else
        printf '%s\n' $keys | sed -n 's/=.*/=/p' | uniq
    end
end

function __cimhttp_connections
    env (commandline -opc)[1] connection list --output csv 2>/dev/null | sed -e 1d -e 's/,.*//'
end

function __cimhttp_known_servers
    env (commandline -opc)[1] connection known --output csv 2>/dev/null | sed -e 1d -e 's/,.*//'
end

function __cimhttp_has_connection
    set -l line (__cimhttp_read_line)
    test "$line[1],$line[2]" = connection,1; and contains -- "$line[3]" $argv
end

complete -c cimhttp -f

# Commands, each with what it does. All but the last two can be recorded.
set -l commands \
    info 'Show the plug-in, the server and how it is reached' \
    doctor 'Check a server step by step' \
    namespaces "List the server's namespaces" \
    profiles 'List the profiles that the server conforms to' \
    classes "List the names of the server's classes" \
    tree "Draw the hierarchy of the server's classes" \
    class 'Show a class as MOF' \
    methods 'Show the methods of a class' \
    qualifiers 'Show qualifiers' \
    count 'Count the instances of each class' \
    instances 'Show the instances of a class' \
    instance 'Show one instance' \
    associators 'Show what is associated with an instance' \
    references 'Show the associations of an instance' \
    related 'Draw what is associated with an instance' \
    watch 'Show what changes about instances' \
    top 'Show instances live' \
    check 'Check instances for a monitoring system' \
    browse 'Show servers in a web browser' \
    exporter 'Serve metrics for Prometheus' \
    collect 'Write the classes that a document names as JSON' \
    connection 'Keep connections under names' \
    record 'Record what the server answers' \
    help 'Show help'
for i in (seq 1 2 (count $commands))
    set -l name $commands[$i]
    set -l text $commands[(math $i + 1)]
    complete -c cimhttp -n "__cimhttp_begins '' help" -a $name -d $text
    contains $name record help
    or complete -c cimhttp -n __cimhttp_has_recording -a $name -d $text
end

complete -c cimhttp -s h -l help -d 'Show help'
complete -c cimhttp -l version -d 'Show the version, the commit, the compiler'
complete -c cimhttp -l host -x -a '(__fish_print_hostnames)' -d 'The server'
complete -c cimhttp -s c -l connection -x -a '(__cimhttp_connections)' -d 'A named connection'
complete -c cimhttp -l port -x -d 'Port of the server'
complete -c cimhttp -s n -l namespace -x -d 'Namespace on the server'
complete -c cimhttp -l tls -d 'Use HTTPS'
complete -c cimhttp -l ca -r -F -d 'Verify the server by these authorities'
complete -c cimhttp -l fingerprint -x -d 'Accept no other certificate'
complete -c cimhttp -l cert -r -F -d 'Your own certificate'
complete -c cimhttp -n 'not __cimhttp_is instance' -l key -r -F -d 'The key of your certificate'
complete -c cimhttp -l verify -d 'Refuse a server that nothing verifies'
complete -c cimhttp -s u -l user -x -d 'User to log in as'
complete -c cimhttp -l password-file -r -F -d 'File with the password'
complete -c cimhttp -l timeout -x -d 'How long to wait for an answer'
complete -c cimhttp -l parallel -x -d 'How many servers to connect to at once'
complete -c cimhttp -l as-completed -d 'Write several servers in the order in which they are done'
complete -c cimhttp -l strict -d 'Refuse an answer of which a part cannot be read'
complete -c cimhttp -l plugin -r -F -d 'Plug-in to load'
complete -c cimhttp -l trace -r -F -d 'Write all that is sent and received to a file'
complete -c cimhttp -l stats -d 'Tell what each operation took'
complete -c cimhttp -l log -x -a 'error warning info debug' -d 'Write the log to the error stream'
complete -c cimhttp -s o -l output -x -a 'table plain json csv mof dot' -d 'Form of the output'
complete -c cimhttp -l units -x -a 'scaled exact' -d 'How numbers with units are written'
complete -c cimhttp -l verbose -d 'Mark numbers for which their value map has no text'

complete -c cimhttp -n '__cimhttp_begins classes count tree class methods instances instance associators references related watch top check' \
    -a '(__cimhttp_classes)'
complete -c cimhttp -n '__cimhttp_begins check' -a health
complete -c cimhttp -n '__cimhttp_begins collect record' -F
complete -c cimhttp -n '__cimhttp_begins connection' -a 'add list remove test known forget'
complete -c cimhttp -n '__cimhttp_has_connection add remove test' -a '(__cimhttp_connections)'
complete -c cimhttp -n '__cimhttp_has_connection forget' -a '(__cimhttp_known_servers)'

complete -c cimhttp -n '__cimhttp_is class' -l all -d 'Write out what is inherited'
complete -c cimhttp -n '__cimhttp_is count' -l all -d 'Classes without instances, too'
complete -c cimhttp -n '__cimhttp_is instances associators references watch top' -l property -x -a '(__cimhttp_property_list)' \
    -d 'Only this property'
complete -c cimhttp -n '__cimhttp_is instances watch top check' -l where -x -a '(__cimhttp_conditions)' -d 'Only instances with this value'
complete -c cimhttp -n '__cimhttp_is instances top' -l sort -x -a '(__cimhttp_property_list)' -d 'Sort by a property'
complete -c cimhttp -n '__cimhttp_is count' -l sort -x -a 'class count' -d 'Sort by a column'
complete -c cimhttp -n '__cimhttp_is classes count instances top' -l limit -x -d 'The first only'
complete -c cimhttp -n '__cimhttp_is instances' -l exact -d 'Without those of subclasses'
complete -c cimhttp -n '__cimhttp_is instances' -l deep -d 'With what subclasses add'
complete -c cimhttp -n '__cimhttp_is instances' -l paths -d 'Only the paths'
complete -c cimhttp -n '__cimhttp_is instances' -l keys -d 'Only the keys'
complete -c cimhttp -n '__cimhttp_is instances instance' -l wide -d 'CSV with an instance a row'
complete -c cimhttp -n '__cimhttp_is instances instance associators references' -l raw -d 'Values as they are'
complete -c cimhttp -n '__cimhttp_is instance' -l key -x -a '(__cimhttp_keys)' -d 'A key of the instance'
complete -c cimhttp -n '__cimhttp_is associators references qualifiers' -l class -x -a '(__cimhttp_classes)' \
    -d 'Only this class and its subclasses'
complete -c cimhttp -n '__cimhttp_is associators references' -l role -x -d 'The property that refers to the instance'
complete -c cimhttp -n '__cimhttp_is associators' -l result-class -x -a '(__cimhttp_classes)' -d 'Only instances of this class'
complete -c cimhttp -n '__cimhttp_is associators' -l result-role -x -d 'The property that refers to the result'
complete -c cimhttp -n '__cimhttp_is associators references' -l names -d 'Only the paths'
complete -c cimhttp -n '__cimhttp_is related' -l depth -x -d 'How many associations in a row'
complete -c cimhttp -n '__cimhttp_is watch top' -l interval -x -d 'Time between two readings'
complete -c cimhttp -n '__cimhttp_is watch top' -l count -x -d 'End after so many readings'
complete -c cimhttp -n '__cimhttp_is check' -l warning -x -a '(__cimhttp_conditions)' -d 'Warn about what is outside a range'
complete -c cimhttp -n '__cimhttp_is check' -l critical -x -a '(__cimhttp_conditions)' -d 'What is critical'
complete -c cimhttp -n '__cimhttp_is check' -l ignore -x -d 'Leave out known faults'
complete -c cimhttp -n '__cimhttp_is browse exporter' -l listen -x -d 'Where to listen'
complete -c cimhttp -n '__cimhttp_is browse' -l no-open -d 'Open no browser'
complete -c cimhttp -n '__cimhttp_is exporter' -l modules -r -F -d 'What is read'
complete -c cimhttp -n '__cimhttp_is exporter' -l suggest -x -a '(__cimhttp_classes)' -d 'Write a module for a class'
complete -c cimhttp -n '__cimhttp_is exporter' -l allow-hosts -x -d 'Read also hosts that match'
complete -c cimhttp -n '__cimhttp_is exporter' -l web-config -r -F -d 'TLS and users of the port'
complete -c cimhttp -n '__cimhttp_is exporter' -l max-series -x -d 'Series of one server at most'
complete -c cimhttp -n '__cimhttp_is exporter' -l max-bytes -x -d 'Bytes from one server in a scrape at most'
complete -c cimhttp -n '__cimhttp_is exporter' -l definitions-ttl -x -d 'How long definitions are kept'
complete -c cimhttp -n '__cimhttp_is collect' -l out -r -F -d 'File to write'
complete -c cimhttp -n '__cimhttp_is collect' -l html -r -F -d 'Page for a browser to write'
complete -c cimhttp -n '__cimhttp_is connection' -l store-password -d 'Keep the password, in plain text'

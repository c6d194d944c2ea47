#compdef cimhttp
# Completion of cimhttp's command line for zsh: commands, options and their values, the names of connections and, when the
# server is quick, of its classes.

# Runs a command for what it lists. A server that does not answer within CIMHTTP_COMPLETION_SECONDS, usually 1, completes
# nothing. With its errors discarded, it asks for no password.
_cimhttp_ask() {
    # several servers are not asked, whose answers would not be words
    [[ ! " $server" =~ ' (-c|--connection)[ =][^ ]*[*?,@[]' ]] || return 0
    timeout ${CIMHTTP_COMPLETION_SECONDS-1} ${(Q)program} $server "$@" 2>/dev/null
}

# Offers the lines of a text, in quotes where the shell needs them. Case does not count.
_cimhttp_offer() {
    local -a lines=(${(f)1})
    compadd -M 'm:{[:lower:][:upper:]}={[:upper:][:lower:]}' "${@[2,-1]}" -a lines
}

# The names of classes are asked for again when the line chooses another server than before, or after a minute.
_cimhttp_classes() {
    if [[ "$server" != "${_cimhttp_classes_server-none}" ]] || ((SECONDS - ${_cimhttp_classes_time-0} > 60)); then
        typeset -g _cimhttp_class_names="$(_cimhttp_ask classes)"
        typeset -g _cimhttp_classes_server="$server" _cimhttp_classes_time=$SECONDS
    fi
    _cimhttp_offer "$_cimhttp_class_names"
}

# What check takes.
_cimhttp_checkable() {
    compadd health
    _cimhttp_classes
}

# The properties of the class that stands before, in a list such as Name,Size.
_cimhttp_property_list() {
    [[ -n $argument ]] || return 1
    compset -P '*,'
    _cimhttp_offer "$(_cimhttp_ask class $argument --output csv | sed -e 1d -e 's/,.*//')"
}

_cimhttp_condition() {
    [[ -n $argument ]] || return 1
    _cimhttp_offer "$(_cimhttp_ask class $argument --output csv | sed -e 1d -e 's/,.*//')" -S =
}

# The names of the keys that the instances of the class have, or the values of one.
_cimhttp_keys() {
    [[ -n $argument ]] || return 1
    local keys="$(_cimhttp_ask instances $argument --keys --output plain | sort -u)"
    if compset -P 1 '*='; then
        local name=${${IPREFIX%=}##*=}
        _cimhttp_offer "$(print -r -- $keys | sed -n "s/^${name//[^[:alnum:]_]/.}=//Ip")"
    else
        _cimhttp_offer "$(print -r -- $keys | sed -n 's/=.*//p' | uniq)" -S =
    fi
}

_cimhttp_connections() {
    _cimhttp_offer "$(${(Q)program} connection list --output csv 2>/dev/null | sed -e 1d -e 's/,.*//')"
}

_cimhttp_connection_names() {
    if [[ $argument == forget ]]; then
        _cimhttp_offer "$(${(Q)program} connection known --output csv 2>/dev/null | sed -e 1d -e 's/,.*//')"
    else
        _cimhttp_connections
    fi
}

# Commands that record takes, too.
_cimhttp_recordable=(
    'info:show the plug-in, the server and how it is reached'
    'doctor:check a server step by step'
    "namespaces:list the server's namespaces"
    'profiles:list the profiles that the server conforms to'
    "classes:list the names of the server's classes"
    "tree:draw the hierarchy of the server's classes"
    'class:show a class as MOF'
    'methods:show the methods of a class'
    'qualifiers:show qualifiers'
    'count:count the instances of each class'
    'instances:show the instances of a class'
    'instance:show one instance'
    'associators:show what is associated with an instance'
    'references:show the associations of an instance'
    'related:draw what is associated with an instance'
    'watch:show what changes about instances'
    'top:show instances live'
    'check:check instances for a monitoring system'
    'browse:show servers in a web browser'
    'exporter:serve metrics for Prometheus'
    'collect:write the classes that a document names as JSON'
    'connection:keep connections under names'
)

_cimhttp_inner_commands() {
    _describe -t commands command _cimhttp_recordable
}

_cimhttp_commands() {
    local -a all=($_cimhttp_recordable 'record:record what the server answers' 'help:show help')
    _describe -t commands command all
}

_cimhttp_help_topics() {
    _cimhttp_commands
}

# Options that stand before and after every command.
_cimhttp_general=(
    '(- *)-h[show help]'
    '(- *)--help[show help]'
    '(- *)--version[show the version, the commit, the compiler]'
    '(-c --connection)--host=[the server]:host:_hosts'
    '(--host --connection)-c+[a named connection]:connection:_cimhttp_connections'
    '(--host -c)--connection=[a named connection]:connection:_cimhttp_connections'
    '--port=[port of the server]:port:'
    '(--namespace)-n+[namespace on the server]:namespace:'
    '(-n)--namespace=[namespace on the server]:namespace:'
    '--tls[use HTTPS]'
    '(--fingerprint)--ca=[verify the server by these authorities]:file:_files'
    '(--ca)--fingerprint=[accept no other certificate]:SHA-256:'
    '--cert=[your own certificate]:file:_files'
    '--key=[the key of your certificate]:file:_files'
    '--verify[refuse a server that nothing verifies]'
    '(--user)-u+[user to log in as]:user:'
    '(-u)--user=[user to log in as]:user:'
    '--password-file=[file with the password]:file:_files'
    '--timeout=[how long to wait for an answer]:seconds:'
    '--parallel=[how many servers to connect to at once]:number:'
    '--as-completed[write several servers in the order in which they are done]'
    '--strict[refuse an answer of which a part cannot be read]'
    '--plugin=[plug-in to load]:file:_files'
    '--trace=[write all that is sent and received to a file]:file:_files'
    '--stats[tell what each operation took]'
    '--log=[write the log to the error stream]:level:(error warning info debug)'
    '(--output)-o+[form of the output]:form:(table plain json csv mof dot)'
    '(-o)--output=[form of the output]:form:(table plain json csv mof dot)'
    '--units=[how numbers with units are written]:form:(scaled exact)'
    '--verbose[mark numbers for which their value map has no text]'
)

# Sets options to those of a command, and places to what its arguments are.
_cimhttp_describe_command() {
    local property='*--property=[only this property]:property:_cimhttp_property_list'
    local where='*--where=[only instances with this value]:condition:_cimhttp_condition'
    local limit='--limit=[the first only]:number:'
    local raw='--raw[values as they are]' wide='--wide[CSV with an instance a row]'
    local -a between=(
        '--class=[only associations of this class]:class:_cimhttp_classes'
        '--role=[the property that refers to the instance]:property:'
        '--names[only the paths]' $property $raw
    )
    options=() places=()
    case $1 in
        classes) options=($limit) places=(_cimhttp_classes) ;;
        count)
            options=('--all[classes without instances, too]' '*--sort=[sort by a column]:column:(class count)' $limit)
            places=(_cimhttp_classes)
            ;;
        class) options=('--all[write out what is inherited]') places=(_cimhttp_classes) ;;
        tree | methods) places=(_cimhttp_classes) ;;
        instances)
            options=($property $where '*--sort=[sort by a property]:property:_cimhttp_property_list' $limit
                '--exact[without those of subclasses]' '--deep[with what subclasses add]' '--paths[only the paths]'
                '--keys[only the keys]' $wide $raw)
            places=(_cimhttp_classes)
            ;;
        instance)
            options=('*--key=[a key of the instance]:key:_cimhttp_keys' $wide $raw)
            places=(_cimhttp_classes)
            ;;
        associators)
            options=($between '--result-class=[only instances of this class]:class:_cimhttp_classes'
                '--result-role=[the property that refers to the result]:property:')
            places=(_cimhttp_classes)
            ;;
        references) options=($between) places=(_cimhttp_classes) ;;
        related) options=('--depth=[how many associations in a row]:number:') places=(_cimhttp_classes) ;;
        qualifiers) options=('--class=[those of a class]:class:_cimhttp_classes') ;;
        watch)
            options=('--interval=[time between two readings]:seconds:' '--count=[end after so many readings]:number:'
                $property $where)
            places=(_cimhttp_classes)
            ;;
        top)
            options=('--interval=[time between two readings]:seconds:' '--count=[end after so many readings]:number:'
                $property $where '--sort=[sort by a property at first]:property:_cimhttp_property_list'
                '--limit=[the first rows only]:number:')
            places=(_cimhttp_classes)
            ;;
        check)
            options=($where '*--warning=[warn about what is outside a range]:threshold:_cimhttp_condition'
                '*--critical=[what is critical]:threshold:_cimhttp_condition' '*--ignore=[leave out known faults]:pattern:')
            places=(_cimhttp_checkable)
            ;;
        browse) options=('--listen=[where to listen]:address:' '--no-open[open no browser]') ;;
        exporter)
            options=('--listen=[where to listen]:address:' '--modules=[what is read]:file:_files'
                '--suggest=[write a module for a class]:class:_cimhttp_classes'
                '*--allow-hosts=[read also hosts that match]:pattern:' '--web-config=[TLS and users of the port]:file:_files'
                '--max-series=[series of one server at most]:number:'
                '--max-bytes=[bytes from one server in a scrape at most]:number:'
                '--definitions-ttl=[how long definitions are kept]:seconds:')
            ;;
        collect) options=('--out=[file to write]:file:_files' '--html=[page for a browser to write]:file:_files') places=(_files) ;;
        connection)
            options=('--store-password[keep the password, in plain text]')
            places=('(add list remove test known forget)' _cimhttp_connection_names)
            ;;
        record) places=(_files _cimhttp_inner_commands) ;;
        help) places=(_cimhttp_help_topics) ;;
    esac
}

_cimhttp() {
    local program=$words[1] command='' argument='' word option name
    local -a server options places before given described
    local -A takes
    local -i i arguments=0 place=1
    before=(_cimhttp_commands)
    for option in $_cimhttp_general; do
        name=${${option#\(*\)}%%\[*}
        [[ $name != *[=+] ]] || takes[${name%[=+]}]=1
    done
    for ((i = 2; i < CURRENT; i++)); do
        word=$words[i]
        if [[ $word == -* ]]; then
            given=(${(Q)word})
            if [[ $word != *=* && -n $takes[$word] ]]; then
                i+=1
                ((i >= CURRENT)) || given+=(${(Q)words[i]})
            fi
            case $word in
                --key*) [[ $command == instance ]] || server+=($given) ;;
                -c* | --connection* | --host* | --port* | -n* | --namespace* | -u* | --user* | --password-file* | --ca* | \
                    --fingerprint* | --cert* | --tls* | --verify*) server+=($given) ;;
            esac
        elif [[ -z $command || ($command == record && $arguments == 1) ]]; then
            [[ $command != record ]] || before=(_cimhttp_commands _files _cimhttp_inner_commands)
            command=$word argument='' arguments=0
            _cimhttp_describe_command $command
            for option in $options; do
                name=${${option#\*}%%\[*}
                [[ $name != *= ]] || takes[${name%=}]=1
            done
        else
            [[ -n $argument ]] || argument=${(Q)word}
            arguments+=1
        fi
    done
    described=($_cimhttp_general)
    [[ $command != instance ]] || described=(${described:#--key=*})
    for word in $before $places; do
        described+=("$place::argument:$word")
        place+=1
    done
    _arguments -S $described $options
}

_cimhttp "$@"

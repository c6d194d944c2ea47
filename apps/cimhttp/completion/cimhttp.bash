# Completion of cimhttp's command line for bash: commands, options and their values, the names of connections and, when
# the server is quick, of its classes.

# What the server sends goes into the command line with quotes, so that the shell takes it for nothing but a word.

# Sets words to those of the line $1, as they are typed. Blanks end a word, but not after a backslash or in quotes.
_cimhttp_split() {
    local line=$1 word='' quote='' letter i
    words=()
    for ((i = 0; i < ${#line}; i++)); do
        letter=${line:i:1}
        if [[ $letter == [[:space:]] && -z $quote ]]; then
            [[ -z $word ]] || words+=("$word")
            word=''
            continue
        fi
        if [[ $letter == \\ && $quote != \' ]]; then
            i=$((i + 1))
            letter+=${line:i:1}
        elif [[ $letter == "$quote" ]]; then
            quote=''
        elif [[ -z $quote && $letter == [\'\"] ]]; then
            quote=$letter
        fi
        word+=$letter
    done
    words+=("$word")
}

# Reads the line up to the cursor. Sets, in the variables of _cimhttp: the word at the cursor and the one before it, the
# command, the first argument of it, how many arguments precede the cursor, and the options that choose the server.
# Of the word at the cursor, readline replaces only what follows the last of its word breaks; kept is the rest.
_cimhttp_read_line() {
    local words rest letter i
    _cimhttp_split "${COMP_LINE:0:COMP_POINT}"
    current=${words[-1]} previous=${words[-2]}
    rest=$current
    for letter in = : @; do
        [[ $COMP_WORDBREAKS != *$letter* ]] || rest=${rest##*"$letter"}
    done
    kept=${current:0:${#current}-${#rest}}
    command='' argument='' arguments=0 server=()
    for ((i = 1; i < ${#words[@]} - 1; i++)); do
        case ${words[i]} in
            -c | --connection | --host | --port | -n | --namespace | -u | --user | --password-file | --ca | --fingerprint | \
                --cert | --key)
                # after the command instance, a key is one of the instance's
                [[ ${words[i]} == --key && $command == instance ]] || server+=("${words[i]}" "${words[i + 1]}")
                i=$((i + 1))
                ;;
            -o | --units | --timeout | --parallel | --plugin | --log | --trace | --output | --property | --where | --sort | --limit | --class | --out | --html | \
                --interval | --count | --role | --result-class | --result-role | --depth | --warning | --critical | --ignore | \
                --listen | --modules | --suggest | --allow-hosts | --web-config | --max-series | --max-bytes | --definitions-ttl)
                i=$((i + 1))
                ;;
            --tls* | --verify*) server+=("${words[i]}") ;;
            -*) ;;
            *)
                # after record and its file comes another command
                if [[ -z $command || ($command == record && $arguments == 1) ]]; then
                    command=${words[i]} argument='' arguments=0
                else
                    [[ -n $argument ]] || argument=${words[i]}
                    arguments=$((arguments + 1))
                fi
                ;;
        esac
    done
}

# Offers those lines of the text $1 that begin like the word at the cursor, in quotes where they need them, each between
# the words $3 and $4, which have theirs. With $2, case does not count.
_cimhttp_offer() {
    local candidate
    while IFS= read -r candidate; do
        [[ -n $candidate ]] || continue
        printf -v candidate '%s%q%s' "$3" "$candidate" "$4"
        if [[ $candidate == "$current"* || (-n $2 && ${candidate,,} == "${current,,}"*) ]]; then
            COMPREPLY+=("${candidate:${#kept}}")
        fi
    done <<<"$1"
}

# Runs a command for what it lists. A server that does not answer within CIMHTTP_COMPLETION_SECONDS, usually 1, completes
# nothing. With its errors discarded, it asks for no password.
_cimhttp_ask() {
    # several servers are not asked, whose answers would not be words
    [[ " ${server[*]}" != *\ @(-c|--connection)[\ =]*[*?,@[]* ]] || return 0
    timeout "${CIMHTTP_COMPLETION_SECONDS-1}" "${COMP_WORDS[0]}" "${server[@]}" "$@" 2>/dev/null
}

# The names of classes are asked for again when the line chooses another server than before, or after a minute.
_cimhttp_offer_classes() {
    if [[ "${server[*]}" != "${_cimhttp_classes_server-none}" ]] || ((SECONDS - _cimhttp_classes_time > 60)); then
        _cimhttp_classes=$(_cimhttp_ask classes)
        _cimhttp_classes_server="${server[*]}"
        _cimhttp_classes_time=$SECONDS
    fi
    _cimhttp_offer "$_cimhttp_classes" without-case
}

# The properties of the class that stands before, each between the words $1 and $2.
_cimhttp_offer_properties() {
    [[ -n $argument ]] || return 0
    _cimhttp_offer "$(_cimhttp_ask class "$argument" --output csv | sed -e 1d -e 's/,.*//')" without-case "$1" "$2"
}

# Offers the properties after those that a list such as Name,Size has already.
_cimhttp_offer_property_list() {
    local before=''
    [[ $current == *,* ]] && before=${current%,*},
    _cimhttp_offer_properties "$before" ''
}

# The names of the keys that the instances of the class have, or the values of one.
_cimhttp_offer_keys() {
    [[ -n $argument ]] || return 0
    local keys
    keys=$(_cimhttp_ask instances "$argument" --keys --output plain | sort -u)
    if [[ $current == *=* ]]; then
        _cimhttp_offer "$keys" without-case
    else
        compopt -o nospace 2>/dev/null # the value follows at once
        _cimhttp_offer "$(sed -n 's/=.*//p' <<<"$keys" | uniq)" without-case '' '='
    fi
}

_cimhttp_offer_connections() {
    _cimhttp_offer "$("${COMP_WORDS[0]}" connection list --output csv 2>/dev/null | sed -e 1d -e 's/,.*//')"
}

_cimhttp_offer_known_servers() {
    _cimhttp_offer "$("${COMP_WORDS[0]}" connection known --output csv 2>/dev/null | sed -e 1d -e 's/,.*//')"
}

_cimhttp_offer_files() {
    mapfile -t COMPREPLY < <(compgen -f -- "$current")
}

_cimhttp_offer_words() {
    _cimhttp_offer "$(printf '%s\n' "$@")"
}

_cimhttp_offer_options() {
    _cimhttp_offer_words --help --version --host --connection --port --namespace --tls --ca --fingerprint --cert --key \
        --verify --user --password-file --timeout --parallel --as-completed --strict --plugin --log --trace --stats --output --units --verbose
    case $command in
        class) _cimhttp_offer_words --all ;;
        instances) _cimhttp_offer_words --property --where --sort --limit --exact --deep --paths --keys --wide --raw ;;
        instance) _cimhttp_offer_words --wide --raw ;; # its --key has the name of a general option
        classes) _cimhttp_offer_words --limit ;;
        count) _cimhttp_offer_words --all --sort --limit ;;
        associators) _cimhttp_offer_words --class --role --result-class --result-role --names --property --raw ;;
        references) _cimhttp_offer_words --class --role --names --property --raw ;;
        related) _cimhttp_offer_words --depth ;;
        qualifiers) _cimhttp_offer_words --class ;;
        watch) _cimhttp_offer_words --interval --count --property --where ;;
        top) _cimhttp_offer_words --interval --count --property --where --sort --limit ;;
        check) _cimhttp_offer_words --where --warning --critical --ignore ;;
        browse) _cimhttp_offer_words --listen --no-open ;;
        exporter) _cimhttp_offer_words --listen --modules --suggest --allow-hosts --web-config --max-series --max-bytes --definitions-ttl ;;
        collect) _cimhttp_offer_words --out --html ;;
        connection) _cimhttp_offer_words --store-password ;;
    esac
}

# All commands that record takes, and the words given.
_cimhttp_offer_commands() {
    _cimhttp_offer_words info doctor namespaces profiles classes tree class methods qualifiers count \
        instances instance associators references related watch top check browse exporter collect connection "$@"
}

_cimhttp_offer_arguments() {
    case $command,$arguments in
        ,* | help,0) _cimhttp_offer_commands record help ;;
        record,1) _cimhttp_offer_commands ;;
        classes,0 | count,0 | tree,0 | class,0 | methods,0 | instances,0 | instance,0 | \
            associators,0 | references,0 | related,0 | watch,0 | top,0) _cimhttp_offer_classes ;;
        check,0)
            _cimhttp_offer_classes
            _cimhttp_offer_words health
            ;;
        collect,0 | record,0) _cimhttp_offer_files ;;
        connection,0) _cimhttp_offer_words add list remove test known forget ;;
        connection,1) if [[ $argument == forget ]]; then _cimhttp_offer_known_servers; else _cimhttp_offer_connections; fi ;;
    esac
}

_cimhttp() {
    local current previous kept command argument arguments server
    _cimhttp_read_line
    COMPREPLY=()
    case $previous in
        -c | --connection) _cimhttp_offer_connections ;;
        -o | --output) _cimhttp_offer_words table plain json csv mof dot ;;
        --units) _cimhttp_offer_words scaled exact ;;
        --log) _cimhttp_offer_words error warning info debug ;;
        --class | --result-class | --suggest) _cimhttp_offer_classes ;;
        --password-file | --plugin | --trace | --out | --html | --ca | --cert | --modules | --web-config) _cimhttp_offer_files ;;
        --host) mapfile -t COMPREPLY < <(compgen -A hostname -- "$current") ;;
        --key) if [[ $command == instance ]]; then _cimhttp_offer_keys; else _cimhttp_offer_files; fi ;;
        --property) _cimhttp_offer_property_list ;;
        --sort)
            if [[ $command == count ]]; then
                _cimhttp_offer_words class count
            else
                _cimhttp_offer_property_list
            fi
            ;;
        --where | --warning | --critical)
            compopt -o nospace 2>/dev/null # the value follows at once
            _cimhttp_offer_properties '' '='
            ;;
        -u | --user | --port | -n | --namespace | --fingerprint | --timeout | --parallel | --interval | --count | --limit | --role | \
            --result-role | --depth | --ignore | --listen | --allow-hosts | --max-series | --max-bytes | --definitions-ttl) ;;
        *) if [[ $current == -* ]]; then _cimhttp_offer_options; else _cimhttp_offer_arguments; fi ;;
    esac
}

complete -F _cimhttp cimhttp

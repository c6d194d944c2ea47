# Completion of cimhttp's command line for bash: commands, options and their values, the names of connections and, when
# the server is quick, of its classes.

# Reads the line up to the cursor. Sets, in the variables of _cimhttp: the word at the cursor and the one before it, the
# command, the first argument of it, how many arguments stand before the cursor, and the options that choose the server.
_cimhttp_read_line() {
    local line words i
    line=${COMP_LINE:0:COMP_POINT}
    read -ra words <<<"$line" # bash would also split server:5989 and --tls=false
    [[ $line == *[[:space:]] ]] && words+=('')
    current=${words[-1]} previous=${words[-2]}
    command='' argument='' arguments=0 server=()
    for ((i = 1; i < ${#words[@]} - 1; i++)); do
        case ${words[i]} in
            -c | --connection | --host | --port | -n | --namespace | -u | --user | --password-file | --ca | --fingerprint | \
                --cert | --key)
                server+=("${words[i]}" "${words[i + 1]}")
                i=$((i + 1))
                ;;
            -o | --timeout | --plugin | --log | --output | --property | --where | --class | --out | --interval | --count | \
                --role | --result-class | --result-role | --depth)
                i=$((i + 1))
                ;;
            --tls* | --verify*) server+=("${words[i]}") ;;
            -*) ;;
            *)
                if [[ -z $command ]]; then
                    command=${words[i]}
                else
                    [[ -n $argument ]] || argument=${words[i]}
                    arguments=$((arguments + 1))
                fi
                ;;
        esac
    done
}

# Takes those lines of the text $1 that begin like the word at the cursor. With $2, case does not count.
_cimhttp_offer() {
    local candidate
    while IFS= read -r candidate; do
        if [[ -n $candidate && ($candidate == "$current"* || (-n $2 && ${candidate,,} == "${current,,}"*)) ]]; then
            COMPREPLY+=("$candidate")
        fi
    done <<<"$1"
}

# Runs a command for what it lists. A server that does not answer within CIMHTTP_COMPLETION_SECONDS, usually 1, completes
# nothing; nobody is asked for a password where errors go nowhere.
_cimhttp_ask() {
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

# The properties of the class that stands before, each with the text $1 before and $2 behind its name.
_cimhttp_offer_properties() {
    [[ -n $argument ]] || return 0
    _cimhttp_offer "$(_cimhttp_ask class "$argument" --output csv | sed -e 1d -e "s/\\([^,]*\\),.*/$1\\1$2/")" without-case
}

# The same behind those that a list such as Name,Size has already.
_cimhttp_offer_property_list() {
    local before=''
    [[ $current == *,* ]] && before=${current%,*},
    _cimhttp_offer_properties "$before" ''
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
        --verify --user --password-file --timeout --plugin --log --output
    case $command in
        class) _cimhttp_offer_words --all ;;
        instances) _cimhttp_offer_words --property --where --exact --deep --paths --raw ;;
        instance) _cimhttp_offer_words --raw ;;
        associators) _cimhttp_offer_words --class --role --result-class --result-role --names --property --raw ;;
        references) _cimhttp_offer_words --class --role --names --property --raw ;;
        related) _cimhttp_offer_words --depth ;;
        qualifiers) _cimhttp_offer_words --class ;;
        watch) _cimhttp_offer_words --interval --count --property --where ;;
        collect) _cimhttp_offer_words --out ;;
        connection) _cimhttp_offer_words --store-password ;;
    esac
}

_cimhttp_offer_arguments() {
    case $command,$arguments in
        ,*) _cimhttp_offer_words info doctor namespaces profiles classes tree class methods qualifiers instances instance associators references \
            related watch collect connection ;;
        classes,0 | tree,0 | class,0 | methods,0 | instances,0 | instance,0 | \
            associators,0 | references,0 | related,0 | watch,0) _cimhttp_offer_classes ;;
        collect,0) _cimhttp_offer_files ;;
        connection,0) _cimhttp_offer_words add list remove test known forget ;;
        connection,1) if [[ $argument == forget ]]; then _cimhttp_offer_known_servers; else _cimhttp_offer_connections; fi ;;
    esac
}

_cimhttp() {
    local current previous command argument arguments server
    _cimhttp_read_line
    COMPREPLY=()
    case $previous in
        -c | --connection) _cimhttp_offer_connections ;;
        -o | --output) _cimhttp_offer_words table plain json csv mof dot ;;
        --log) _cimhttp_offer_words error warning info debug ;;
        --class | --result-class) _cimhttp_offer_classes ;;
        --password-file | --plugin | --out | --ca | --cert | --key) _cimhttp_offer_files ;;
        --host) mapfile -t COMPREPLY < <(compgen -A hostname -- "$current") ;;
        --property) _cimhttp_offer_property_list ;;
        --where)
            compopt -o nospace 2>/dev/null # the value follows at once
            _cimhttp_offer_properties '' '='
            ;;
        -u | --user | --port | -n | --namespace | --fingerprint | --timeout | --interval | --count | \
            --role | --result-role | --depth) ;;
        *) if [[ $current == -* ]]; then _cimhttp_offer_options; else _cimhttp_offer_arguments; fi ;;
    esac
}

complete -F _cimhttp cimhttp

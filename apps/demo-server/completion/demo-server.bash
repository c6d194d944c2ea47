# Completion of demo-server's command line for bash: options, and files for those that take them.

_demo_server() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    COMPREPLY=()
    # readline makes three words of --log=FILE
    if [[ $current == = ]]; then
        current=''
    elif [[ $previous == = ]]; then
        previous=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    case $previous in
        --address | --http-port | --https-port | --volumes | --user) ;;
        --interop) mapfile -t COMPREPLY < <(compgen -W 'interop root/interop root/PG_InterOp' -- "$current") ;;
        --namespace)
            compopt -o nospace 2>/dev/null # the schema follows at once
            [[ $current == */ || -z $current ]] || COMPREPLY=("$current=")
            ;;
        *)
            if [[ $current == -* ]]; then
                mapfile -t COMPREPLY < <(compgen -W '--help --version --address --http-port --https-port --volumes --user \
                    --password-file --users --log --schema --namespace --interop --certificate --key --client-ca \
                    --certificate-out --replay' -- "$current")
            elif [[ $previous == --* || ${COMP_WORDS[COMP_CWORD - 1]} == = || ${COMP_WORDS[COMP_CWORD]} == = ]]; then
                compopt -o filenames 2>/dev/null
                mapfile -t COMPREPLY < <(compgen -f -- "$current")
            fi
            ;;
    esac
}

complete -F _demo_server demo-server

# Completion of camconvert's command line for bash: source it, or put it into the folder of completions.
_camconvert()
{
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
    COMPREPLY=()
    if [ "$COMP_CWORD" -eq 1 ]; then
        COMPREPLY=($(compgen -W "export verify info --help --version" -- "$word"))
        return
    fi
    case $before in
        --format) COMPREPLY=($(compgen -W "gds gerber gds,gerber" -- "$word")); return ;;
        --layers) COMPREPLY=($(compgen -W "all board" -- "$word")); return ;;
        --out) compopt -o filenames; COMPREPLY=($(compgen -d -- "$word")); return ;;
        --json)
            if [ "${COMP_WORDS[1]}" != info ]; then
                compopt -o filenames
                COMPREPLY=($(compgen -f -- "$word"))
                return
            fi
            ;;
        --step | --name | --rotate | --x-scale | --y-scale | --resize | --dbu | --jobs | --memory) return ;;
    esac
    if [[ $word == -* ]]; then
        case ${COMP_WORDS[1]} in
            export)
                COMPREPLY=($(compgen -W "--format --out --step --layers --name --rotate --mirror --x-scale --y-scale
                    --resize --negate --positive --dbu --profile --json --jobs --memory --verify --resume --help" -- "$word"))
                ;;
            verify)
                COMPREPLY=($(compgen -W "--format --step --layers --name --rotate --mirror --x-scale --y-scale
                    --resize --negate --positive --dbu --profile --json --jobs --memory --help" -- "$word"))
                ;;
            info) COMPREPLY=($(compgen -W "--json --help" -- "$word")) ;;
        esac
        return
    fi
    compopt -o filenames
    COMPREPLY=($(compgen -d -- "$word") $(compgen -f -X '!*.tgz' -- "$word"))
}
complete -F _camconvert camconvert

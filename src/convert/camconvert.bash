# Completion of camconvert's command line for bash: source it, or put it into the folder of completions.
_camconvert()
{
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
    COMPREPLY=()
    if [ "$COMP_CWORD" -eq 1 ]; then
        COMPREPLY=($(compgen -W "export verify diff picture info --help --version" -- "$word"))
        return
    fi
    case $before in
        --format) COMPREPLY=($(compgen -W "gds gerber gds,gerber" -- "$word")); return ;;
        --layers) COMPREPLY=($(compgen -W "all board" -- "$word")); return ;;
        --out)
            compopt -o filenames
            case ${COMP_WORDS[1]} in
                picture) COMPREPLY=($(compgen -d -- "$word") $(compgen -f -X '!*.@(png|svg)' -- "$word")) ;;
                *) COMPREPLY=($(compgen -d -- "$word")) ;;
            esac
            return
            ;;
        --picture)
            compopt -o filenames
            COMPREPLY=($(compgen -d -- "$word") $(compgen -f -X '!*.png' -- "$word"))
            return
            ;;
        --json)
            if [ "${COMP_WORDS[1]}" != info ]; then
                compopt -o filenames
                COMPREPLY=($(compgen -f -- "$word"))
                return
            fi
            ;;
        --step | --name | --layer | --scale | --width | --rotate | --x-scale | --y-scale | --resize | --dbu | --jobs | --memory) return ;;
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
            diff)
                COMPREPLY=($(compgen -W "--step --layers --picture --scale --width --json --jobs --memory --help" -- "$word"))
                ;;
            picture)
                COMPREPLY=($(compgen -W "--out --layer --step --mirror --scale --width --help" -- "$word"))
                ;;
            info) COMPREPLY=($(compgen -W "--json --help" -- "$word")) ;;
        esac
        return
    fi
    compopt -o filenames
    if [ "${COMP_WORDS[1]}" = diff ]; then
        COMPREPLY=($(compgen -f -- "$word"))
    else
        COMPREPLY=($(compgen -d -- "$word") $(compgen -f -X '!*.tgz' -- "$word"))
    fi
}
complete -F _camconvert camconvert

# shellcheck shell=bash
# Sourced by the scripts: how they answer --help and a bad call, and where what they run leaves its output.

case "$(cd "$(dirname "$0")" && pwd)" in
*/script/checks) script_name=script/checks/${0##*/} ;;
*) script_name=script/${0##*/} ;;
esac

# answer_help ARGUMENT...: if one of them is --help, prints the comment at the head of the script and ends it
answer_help() {
    local argument
    for argument in "$@"; do
        if [ "$argument" = --help ]; then
            awk 'NR > 1 { if (!/^#/) exit; sub(/^# ?/, ""); print }' "$0"
            exit 0
        fi
    done
}

# bad_call TEXT: says in one line what is wrong with the arguments, and ends the script
bad_call() {
    echo "$script_name: $1" >&2
    exit 2
}

# take_no_arguments ARGUMENT...
take_no_arguments() {
    answer_help "$@"
    [ $# -eq 0 ] || bad_call "takes no arguments, got '$*'"
}

# new_log FILE: empties it, its folder made, or ends the script
new_log() {
    { mkdir -p "$(dirname "$1")" && : >"$1"; } 2>/dev/null || {
        echo "$script_name: cannot write $1" >&2
        exit 1
    }
}

# logged FILE COMMAND...: the command's output is added to the file, and shown if it fails
logged() {
    local log=$1
    shift
    # Not `if ! { ... } >>file`: Bash takes that for a success where it cannot open the file.
    if "$@" >>"$log" 2>&1; then
        return 0
    fi
    cat "$log" >&2
    echo "$script_name: '$*' failed" >&2
    return 1
}

# examples: the names of the C++ examples, which run without arguments, in the order of the manual
examples() {
    grep -oP '^.example \K\w+(?=\.cpp$)' docs/examples.dox
}

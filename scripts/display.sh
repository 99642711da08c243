# shellcheck shell=bash
# A virtual display of one's own. Sourced by ./run and ./test.

# start_display: starts Xvfb on a free display, exports DISPLAY, and ends it when the shell that called it exits.
# Returns 1 when no display comes up within 30 s.
start_display() {
    local number
    exec {display_answer}< <(exec Xvfb -displayfd 3 -screen 0 1600x1000x24 -noreset -nolisten tcp 3>&1 >/dev/null 2>&1)
    display_process=$!
    trap 'kill "$display_process" 2>/dev/null || true' EXIT
    if ! read -r -t 30 -u "$display_answer" number; then
        echo "The virtual display did not start." >&2
        return 1
    fi
    export DISPLAY=":$number"
}

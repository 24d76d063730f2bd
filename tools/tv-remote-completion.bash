# Completes the commands, keys and channels of tv-remote in bash: source this file, in ~/.bashrc or by hand.
_tv_remote() {
    local candidate word
    local -a words=()
    # Typed words have their blanks escaped or quoted.
    for word in "${COMP_WORDS[@]:1:COMP_CWORD}"; do
        word=${word//\\/}
        words+=("${word//[\"\']/}")
    done
    COMPREPLY=()
    while IFS= read -r candidate; do
        COMPREPLY+=("$(printf '%q' "$candidate")")
    done < <("$1" --complete "${words[@]}" 2>/dev/null)
}
complete -o default -F _tv_remote tv-remote

# bash completion of velm, which says itself what may follow
_velm() {
    local IFS=$'\n'
    COMPREPLY=($(compgen -W "$(velm describe "${COMP_WORDS[@]:1:COMP_CWORD}" 2>/dev/null | cut -f 1)" -- "${COMP_WORDS[COMP_CWORD]}"))
}
complete -o default -F _velm velm

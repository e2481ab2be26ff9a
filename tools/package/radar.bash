# Completion of radar's command line in bash.
_radar() {
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} values
    case $before in
    -inp | -in) values="nids lev2 lev2z nowrad kavrad rrwds rcmsite mdr rcm" ;;
    -de) values="d w p, q m," ;;
    -me) values="none print error warn mess out1 out2 out3 out4 debug" ;;
    -dr) values="text data sum map none" ;;
    -cu) values="la" ;;
    -pp) values="full fullab nopage site dist graph refresh bar nobar gif png xwd img gif= png= xwd= img=" ;;
    -re) values="us ne at se mw sp nw sw" ;;
    -va) values="ref vel spect watch comp" ;;
    *)
        if [[ $word == -* ]]; then
            values=$("${COMP_WORDS[0]}" -h 2>/dev/null | sed -n 's/^ \(-[a-z]\{1,\}\).*/\1/p')
        else
            COMPREPLY=($(compgen -f -- "$word"))
            return
        fi
        ;;
    esac
    COMPREPLY=($(compgen -W "$values" -- "$word"))
}
complete -o filenames -F _radar radar

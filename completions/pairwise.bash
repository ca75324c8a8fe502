# Completion of `pairwise` for bash. Source it, or install it as
# share/bash-completion/completions/pairwise.

_pairwise_commands='backup categories check cities demo drive export import info init list new options
  organiser remove restore setup show wipe'
_pairwise_types='contact calendar todo memo timezone'

# The options of a command, without those of the program.
_pairwise_options() {
  case $1 in
    backup) ;;
    categories) ;;
    check) ;;
    cities) echo --from-system --force --table ;;
    demo) ;;
    drive) echo --force ;;
    export) echo --format -o --output ;;
    import) echo --format --category --update ;;
    info) ;;
    init) echo --data --product --registry --city ;;
    list) echo --table ;;
    new) echo --template --field ;;
    options) echo --answers ;;
    organiser) echo --answer --answer-to --disabled --count ;;
    remove) echo --yes ;;
    restore) echo --keep ;;
    setup) echo --answers ;;
    show) echo --category ;;
    wipe) echo --yes ;;
  esac
}

# The formats that a command takes.
_pairwise_formats() {
  case $1 in
    export) echo json csv vcf ics txt rtf ;;
    import) echo json csv vcf ics ;;
  esac
}

# What stands at a place of a command, from 1, behind its name: words, or "@files", "@folders" or
# "@backups". Nothing where it is a name of the person's own.
_pairwise_argument() {
  case $1:$2 in
    categories:1 | list:1 | show:1 | export:1 | import:1) echo "$_pairwise_types" ;;
    new:1 | wipe:*) echo contact calendar todo memo ;;
    remove:1) echo contact ;;
    import:2 | cities:1) echo @files ;;
    check:1 | demo:1) echo @folders ;;
    restore:1) echo @backups ;;
  esac
}

# A folder as it was typed, which the shell would still have to expand: its quotes, and a "~" before
# it.
_pairwise_folder() {
  local typed=$1 home=''
  if [[ $typed =~ ^~[[:alnum:]._-]*(/|$) ]]; then
    home=${typed%%/*}
    typed=${typed#"$home"}
    # Nothing but a name can be behind the "~".
    eval "home=$home"
  fi
  typed=${typed//[\"\']/}
  printf '%s\n' "$home${typed//\\/}"
}

# Offers these words, or what stands for them.
_pairwise_offer() {
  local profile=$2
  case $1 in
    @files)
      compopt -o filenames 2>/dev/null
      mapfile -t COMPREPLY < <(compgen -f -- "$cur")
      ;;
    @folders)
      compopt -o filenames 2>/dev/null
      mapfile -t COMPREPLY < <(compgen -d -- "$cur")
      ;;
    @backups)
      mapfile -t COMPREPLY < <(compgen -W "$(cd "$profile/backups" 2>/dev/null && ls -d [0-9]*T*[0-9] 2>/dev/null)" -- "$cur")
      ;;
    *)
      mapfile -t COMPREPLY < <(compgen -W "$1" -- "$cur")
      ;;
  esac
}

_pairwise() {
  local cur=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  local command='' profile=${PAIRWISE_PROFILE-} place=0 i word
  COMPREPLY=()
  for ((i = 1; i < COMP_CWORD; ++i)); do
    word=${COMP_WORDS[i]}
    case $word in
      -p | --profile) ((++i)) && profile=$(_pairwise_folder "${COMP_WORDS[i]}") ;;
      --data | --product | --registry | --city | --format | -o | --output | --category | --template | \
        --field | --answers | --answer | --answer-to | --count | --from-system) ((++i)) ;;
      -*) ;;
      *)
        if [[ -z $command ]]; then command=$word; else ((++place)); fi
        ;;
    esac
  done
  case $previous in
    -p | --profile | --data) _pairwise_offer @folders ;;
    --registry | -o | --output | --answers | --from-system) _pairwise_offer @files ;;
    --product) _pairwise_offer 'desktop 98 99 orb' ;;
    --format) _pairwise_offer "$(_pairwise_formats "$command")" ;;
    --city | --category | --template | --field | --answer | --answer-to | --count) ;;
    *)
      if [[ $cur == -* ]]; then
        _pairwise_offer "-p --profile -h --help $(_pairwise_options "$command")"
      elif [[ -z $command ]]; then
        _pairwise_offer "$_pairwise_commands"
      else
        _pairwise_offer "$(_pairwise_argument "$command" $((place + 1)))" "$profile"
      fi
      ;;
  esac
}

complete -F _pairwise pairwise

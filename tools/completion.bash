# shellcheck shell=bash
# What bash offers behind "norvex-systeminfo": options, the names of sections, topics, files.

_norvex_systeminfo() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} expected=options
  # Bash takes --option=value for three words.
  if [[ $current == = ]]; then
    current=
  elif [[ $previous == = ]]; then
    previous=${COMP_WORDS[COMP_CWORD - 2]}
  fi

  case $previous in
    --section | --without) expected=sections ;;
    --read | --machine | --compare | --output | -o | --record) expected=files ;;
    *)
      # Other words than options are the reports of these two.
      [[ $current == -* || " ${COMP_WORDS[*]:1:COMP_CWORD-1} " != *\ --@(identify|compare)\ * ]] || expected=files
      ;;
  esac

  case $expected in
    sections)
      mapfile -t COMPREPLY < <(compgen -W "$("$1" --list-sections 2>/dev/null) system cpu memory disks volumes network
        graphics usb serial screens printers environment opengl" -- "$current")
      ;;
    files)
      compopt -o filenames
      mapfile -t COMPREPLY < <(compgen -f -- "$current")
      ;;
    options)
      mapfile -t COMPREPLY < <(compgen -W '--read --machine --section --without --no-opengl
        --list-sections --json --summary --redact --compare --all --identify --skip-braced --output --record
        --anonymous --help --version' -- "$current")
      ;;
  esac
}

complete -F _norvex_systeminfo norvex-systeminfo

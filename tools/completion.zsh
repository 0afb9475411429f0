#compdef norvex-systeminfo
# What zsh offers behind "norvex-systeminfo": options, the names of sections, topics, files.

_norvex_systeminfo_sections() {
  local -a sections=(${(f)"$(_call_program sections ${(q)words[1]} --list-sections 2>/dev/null)"})
  local -a topics=(system cpu memory disks volumes network graphics usb serial screens printers environment opengl)
  _alternative 'sections:section:compadd -a sections' 'topics:topic:compadd -a topics'
}

# Other words than options are the reports of these two.
_norvex_systeminfo_reports() {
  if (( ${words[(I)--identify|--compare*]} )); then
    _files
  else
    _message 'no more arguments'
  fi
}

_arguments \
  '--read=[take the report in a file]:report:_files' \
  '--machine=[let a recording answer for the Macintosh section]:recording:_files' \
  '*--section=[print this section only]:section:_norvex_systeminfo_sections' \
  '*--without=[leave this section out]:section:_norvex_systeminfo_sections' \
  '--no-opengl[leave out the OpenGL section]' \
  '--list-sections[list the sections]' \
  '--json[print JSON]' \
  '--summary[print a few lines for a mail or a chat]' \
  '--redact[replace what is private]' \
  '--compare=[print what differs between two reports]:report:_files' \
  '--all[with --compare\: show also what always differs]' \
  '--identify[print what identifies a machine]' \
  '--skip-braced[with --identify\: ignore interfaces with a name in braces]' \
  '(-o --output)'{-o+,--output=}'[write to a file]:file:_files' \
  '--record=[record the machine]:file:_files' \
  '--anonymous[with --record\: replace what identifies the machine]' \
  '(- *)'{-h,--help}'[print help]' \
  '(- *)'{-v,--version}'[print the version]' \
  '*:report:_norvex_systeminfo_reports'

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
  '--no-opengl[leave out the OpenGL section]' \
  '*--section=[print this section only]:section:_norvex_systeminfo_sections' \
  '--list-sections[list the sections]' \
  '--machine=[let a recording answer for the Macintosh section]:recording:_files' \
  '(-o --output)'{-o+,--output=}'[write to a file]:file:_files' \
  '--json[print JSON]' \
  '--identify[print what identifies a machine]' \
  '--skip-braced[with --identify\: ignore interfaces with a name in braces]' \
  '--record=[record the machine]:file:_files' \
  '--anonymous[with --record\: replace what identifies the machine]' \
  '(- *)'{-h,--help}'[print help]' \
  '(- *)'{-v,--version}'[print the version]' \
  '*:report:_norvex_systeminfo_reports'

# What fish offers behind "norvex-systeminfo": options, the names of sections, topics, files.

function __norvex_systeminfo_sections
    set -l tool (commandline -opc)[1]
    command -q $tool; and $tool --list-sections 2>/dev/null | string replace -r '$' '\tsection'
    string split ' ' 'system cpu memory disks volumes network graphics usb serial screens printers environment opengl' |
        string replace -r '$' '\ttopic'
end

complete -c norvex-systeminfo -f
# Other words than options are the reports of these two.
complete -c norvex-systeminfo -n '__fish_contains_opt identify compare' -F
complete -c norvex-systeminfo -l read -r -F -d 'take the report in a file'
complete -c norvex-systeminfo -l machine -r -F -d 'let a recording answer for the Macintosh section'
complete -c norvex-systeminfo -l section -x -a '(__norvex_systeminfo_sections)' -d 'print this section only'
complete -c norvex-systeminfo -l without -x -a '(__norvex_systeminfo_sections)' -d 'leave this section out'
complete -c norvex-systeminfo -l no-opengl -d 'leave out the OpenGL section'
complete -c norvex-systeminfo -l list-sections -d 'list the sections'
complete -c norvex-systeminfo -l json -d 'print JSON'
complete -c norvex-systeminfo -l summary -d 'print a few lines for a mail or a chat'
complete -c norvex-systeminfo -l redact -d 'replace what is private'
complete -c norvex-systeminfo -l compare -r -F -d 'print what differs between two reports'
complete -c norvex-systeminfo -l all -d 'with --compare: show also what always differs'
complete -c norvex-systeminfo -l identify -d 'print what identifies a machine'
complete -c norvex-systeminfo -l skip-braced -d 'with --identify: ignore interfaces with a name in braces'
complete -c norvex-systeminfo -s o -l output -r -F -d 'write to a file'
complete -c norvex-systeminfo -l record -r -F -d 'record the machine'
complete -c norvex-systeminfo -l anonymous -d 'with --record: replace what identifies the machine'
complete -c norvex-systeminfo -s h -l help -d 'print help'
complete -c norvex-systeminfo -s v -l version -d 'print the version'

# Completion of events-viewer(1) for fish.

complete -c events-viewer -f
complete -c events-viewer -s s -l show -d 'print the most recent events'
complete -c events-viewer -s a -l all -d 'print all events'
complete -c events-viewer -s l -l log -d 'write all events into the output file'
complete -c events-viewer -s h -l help -d 'print a help page'
complete -c events-viewer -s i -l input_file -r -F -d 'log to read'
complete -c events-viewer -s o -l output_file -r -F -d 'file that --log writes'
complete -c events-viewer -s n -l number -x -d 'how many events --show prints'

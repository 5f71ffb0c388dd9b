# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
# Completion of tactus for fish.

set -l commands analyze profile tag history undo fix cache
complete -c tactus -n "not __fish_seen_subcommand_from $commands" -f
complete -c tactus -n "not __fish_seen_subcommand_from $commands" -a analyze -d "Find the tempo of files and folders"
complete -c tactus -n "not __fish_seen_subcommand_from $commands" -a profile -d "Print the whole result record as JSON"
complete -c tactus -n "not __fish_seen_subcommand_from $commands" -a tag -d "Read and write the text frames of a tag"
complete -c tactus -n "not __fish_seen_subcommand_from $commands" -a history -d "Tell what was written into tags"
complete -c tactus -n "not __fish_seen_subcommand_from $commands" -a undo -d "Take writes of tags back"
complete -c tactus -n "not __fish_seen_subcommand_from $commands" -l version -d "Show the version"
complete -c tactus -s h -l help -d "Show the help"

set -l analyze "__fish_seen_subcommand_from analyze"
complete -c tactus -n $analyze -s w -l write -d "Store each tempo in the tag"
complete -c tactus -n $analyze -s f -l force -d "Analyse every file, whatever its tag says"
complete -c tactus -n $analyze -l recheck -d "Analyse files with an unlikely tempo in the tag"
complete -c tactus -n $analyze -s j -l jobs -x -d "Files to analyse at once"
complete -c tactus -n $analyze -l format -x -a "table csv json jsonl" -d "How to print the rows"
complete -c tactus -n $analyze -s o -l output -r -d "Write the rows to a file"
complete -c tactus -n $analyze -s L -l follow -d "Search folders behind links too"
complete -c tactus -n $analyze -l hidden -d "Take in what systems put beside music"
complete -c tactus -n $analyze -l types -x -d "Search folders for these kinds only"
complete -c tactus -n $analyze -l overwrite-output -d "Replace the file whatever it holds"
complete -c tactus -n $analyze -s q -l quiet -d "Show neither progress nor a closing line"
complete -c tactus -n "__fish_seen_subcommand_from analyze profile" -s v -l verbose -d "Add what the decoding library says"

complete -c tactus -n "__fish_seen_subcommand_from profile" -l harmony -d "Add the key of chords and melody"
complete -c tactus -n "__fish_seen_subcommand_from profile" -l trace -d "Add what the stages hand to each other"

complete -c tactus -n "__fish_seen_subcommand_from history" -s n -l number -x -d "Rows to show at the most"
complete -c tactus -n "__fish_seen_subcommand_from history" -l json -d "Print an object a line"
complete -c tactus -n "__fish_seen_subcommand_from history" -l clear -d "Forget everything"
complete -c tactus -n "__fish_seen_subcommand_from undo" -s f -l force -d "Also where the tag says something else"
complete -c tactus -n "__fish_seen_subcommand_from undo set" -l keep-mtime -d "Leave or give back the file's time"

complete -c tactus -n "not __fish_seen_subcommand_from $commands" -a fix -d "Put tempos right"
complete -c tactus -n "not __fish_seen_subcommand_from $commands" -a cache -d "Look after what is remembered of songs"
complete -c tactus -n "__fish_seen_subcommand_from fix" -a "x2 /2 3:2 2:3 4:3 3:4 tap"
complete -c tactus -n "__fish_seen_subcommand_from fix" -s n -l dry-run -d "Only say what would be written"
complete -c tactus -n "__fish_seen_subcommand_from fix" -l keep-mtime -d "Leave the file's time"
complete -c tactus -n "__fish_seen_subcommand_from fix" -s L -l follow -d "Search folders behind links too"
complete -c tactus -n "__fish_seen_subcommand_from cache" -f -a "info prune clear"
complete -c tactus -n $analyze -l overwrite-hand -d "Replace tempos set by hand too"
complete -c tactus -n $analyze -l only-if-off -x -d "Replace only what is off by more"
complete -c tactus -n $analyze -l dry-run -d "Only say what would be written"
complete -c tactus -n $analyze -l log -r -d "Write every row to a file as well"
complete -c tactus -n $analyze -l candidates -d "Show the next reading of each tempo"
complete -c tactus -n $analyze -l octave -x -a "likely heard" -d "Which reading to tell"
complete -c tactus -n $analyze -l range -x -d "Fold tempos into a range"
complete -c tactus -n $analyze -l review -d "Show only doubtful tempos"
complete -c tactus -n $analyze -l no-cache -d "Hear every file anew"

set -l tag "__fish_seen_subcommand_from tag; and not __fish_seen_subcommand_from get set list"
complete -c tactus -n $tag -f -a get -d "Print the text of a frame"
complete -c tactus -n $tag -f -a set -d "Replace the text of a frame"
complete -c tactus -n $tag -f -a list -d "List the frames"
complete -c tactus -n "__fish_seen_subcommand_from list" -l json -d "Print an object"

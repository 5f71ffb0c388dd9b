# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
# shellcheck shell=bash
# Completion of tactus for bash.

_tactus() {
    local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD - 1]}
    local command=${COMP_WORDS[1]} words=""
    # Of every command that goes through files.
    local run="--jobs --follow --hidden --types --exclude --files-from --null --max-errors --lock"
    run+=" --progress --no-cache --output --overwrite-output --quiet --verbose --help"
    COMPREPLY=()
    if [ "$COMP_CWORD" -eq 1 ]; then
        mapfile -t COMPREPLY < <(compgen -W "analyze profile export dupes tag history undo fix cache --help --version" -- "$cur")
        return
    fi
    case $prev in
        --format)
            mapfile -t COMPREPLY < <(compgen -W "table csv json jsonl" -- "$cur")
            return
            ;;
        --round)
            mapfile -t COMPREPLY < <(compgen -W "0 1 2" -- "$cur")
            return
            ;;
        --id3)
            mapfile -t COMPREPLY < <(compgen -W "keep 2.3" -- "$cur")
            return
            ;;
        --progress)
            mapfile -t COMPREPLY < <(compgen -W "line json none" -- "$cur")
            return
            ;;
        --octave)
            mapfile -t COMPREPLY < <(compgen -W "likely heard" -- "$cur")
            return
            ;;
        --where | --sort | --columns | --delimiter | --base | --offset | --only-if-off | --range | --exclude | --max-errors | --fields | -j | --jobs | --types | --write-types | --number) return ;;
        -n)
            [ "$command" = history ] && return
            ;;
    esac
    case $command in
        analyze)
            words="$run --write --force --recheck --format --full --fields --short --harmony"
            words+=" --overwrite-hand --only-if-off --dry-run --log --candidates --octave --range --review"
            words+=" --write-types --round --keep-mtime --id3 --write-key"
            ;;
        profile)
            words="$run --half-beats --fingerprint --envelopes --samples --fields --trace --harmony"
            ;;
        export)
            if [ "$COMP_CWORD" -eq 2 ]; then
                mapfile -t COMPREPLY < <(compgen -W "rekordbox labels m3u8 csv midi jams svg --help" -- "$cur")
                return
            fi
            words="$run --where --sort"
            case ${COMP_WORDS[2]} in
                rekordbox) words+=" --base --offset" ;;
                m3u8) words+=" --relative" ;;
                csv) words+=" --columns --delimiter --bom" ;;
            esac
            ;;
        dupes) words="$run --json" ;;
        history) words="--number --json --clear --help" ;;
        undo) words="--force --keep-mtime --help" ;;
        fix)
            words="--dry-run --keep-mtime --follow --help"
            if [ "$COMP_CWORD" -eq 2 ]; then
                mapfile -t COMPREPLY < <(compgen -W "x2 /2 3:2 2:3 4:3 3:4 tap --help" -- "$cur")
                return
            fi
            ;;
        cache)
            mapfile -t COMPREPLY < <(compgen -W "info prune clear --help" -- "$cur")
            return
            ;;
        tag)
            words="--help"
            if [ "$COMP_CWORD" -eq 2 ]; then
                mapfile -t COMPREPLY < <(compgen -W "get set list --help" -- "$cur")
                return
            fi
            if [ "${COMP_WORDS[2]}" = list ]; then
                words="--json --help"
            elif [ "${COMP_WORDS[2]}" = set ] && [[ $cur == -* ]]; then
                words="--keep-mtime --help"
            elif [ "$COMP_CWORD" -eq 4 ]; then
                mapfile -t COMPREPLY < <(compgen -W "TBPM TIT2 TPE1 TALB TCON TKEY" -- "$cur")
                return
            fi
            ;;
        *) return ;;
    esac
    if [[ $cur == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$words" -- "$cur")
    else
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$cur")
    fi
}
complete -F _tactus tactus

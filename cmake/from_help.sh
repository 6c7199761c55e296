#!/bin/sh
# Makes what installs beside the program out of what the program says about its options: completion for shells, and man
# pages of the program and of each of its commands.
# usage: from_help.sh VRK VERSION SHARE_DIR HELP2MAN (a name that is no program: no man pages)
set -eu
vrk=$1 version=$2 share=$3 help2man=$4
put() { # SHELL PATH
  mkdir -p "$share/$(dirname "$2")"
  "$vrk" completion "$1" >"$share/$2"
}
put bash bash-completion/completions/vrk
put zsh zsh/site-functions/_vrk     # where zsh looks below /usr/local
put zsh zsh/vendor-completions/_vrk # and in Debian's packages
put fish fish/vendor_completions.d/vrk.fish

command -v "$help2man" >/dev/null || exit 0
pages=$share/man/man1
mkdir -p "$pages"
commands=$("$vrk" --help | sed -n '/^Subcommands:/,/^$/s/^  \([a-z]\{1,\}\) .*/\1/p')
page() { # NAME HELP_OPTION TEXT OTHERS...: the text comes first, the others are named last
  name=$1 option=$2 text=$3
  shift 3
  printf '[see also]\n' >"$share/include"
  for other in "$@"; do printf '.BR %s (1)\n' "$other" >>"$share/include"; done
  "$help2man" --no-info --version-string="$version" --name="$text" --help-option="$option" --include="$share/include" \
    "$vrk" | sed -e "s/^\.TH VRK /.TH $(echo "$name" | tr '[:lower:]' '[:upper:]') /" -e "s/^vrk \\\\- /$name \\\\- /" \
    -e '/^\.SH EXAMPLES/,/^\.PP/{s/^\.IP$/.IP\n.nf/;s/^\.PP$/.fi\n.PP/}' >"$pages/$name.1"
  rm "$share/include"
}
others=
for command in $commands; do
  text=$("$vrk" "$command" --help | sed '/^Usage:/,$d' | tr '\n' ' ' | sed 's/ $//')
  page "vrk-$command" "$command --help" "$text" vrk
  others="$others vrk-$command"
done
# shellcheck disable=SC2086 # several names
page vrk --help "$("$vrk" --help | sed 's/^vrk: //;q')" $others

# What zsh writes when Tab is pressed behind each of the given lines: zsh -f complete.zsh LINE...
zmodload zsh/zpty
zpty shell 'TERM=dumb zsh -f -i'
zpty -w shell 'PS1=; autoload -Uz compinit && compinit -u -D; unsetopt beep'
for line in "$@"; do
    zpty -w -n shell "$line"$'\t'
    sleep 2
    zpty -w -n shell $'\x15'$'print -r -- gone\n'
    zpty -r shell answer '*gone*gone*'
    print -r -- "$answer"
done
zpty -d shell

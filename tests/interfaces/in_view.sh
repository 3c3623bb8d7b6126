#!/usr/bin/env bash
# Runs a command in a private view of the file system, in which the discovery files of an installed
# tree lie where the system has them, and XBoard keeps its settings in a scratch folder.
# unshare --mount bash in_view.sh PREFIX SCRATCH COMMAND...
set -euo pipefail
prefix=$1 scratch=$2
shift 2

# /usr/share/games/plugins may not exist, so the folder around it is replaced.
games=$scratch/usr_share_games
mkdir -p "$games/xboard" "$games/plugins"
mount --bind /usr/share/games/xboard "$games/xboard"
mount --bind "$prefix/share/games/plugins" "$games/plugins"
mount --rbind "$games" /usr/share/games

# XBoard finds its home in the list of users and not in HOME, so that its own settings name it.
sed "s|~/.xboardrc|$scratch/xboardrc|g" /etc/xboard/xboard.conf >"$scratch/xboard.conf"
mount --bind "$scratch/xboard.conf" /etc/xboard/xboard.conf
export INTERFACE_SETTINGS=$scratch/xboardrc
exec "$@"

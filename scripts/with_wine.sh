#!/usr/bin/env bash
# Runs a Windows program in the project's own Wine prefix: with_wine.sh PROGRAM [ARGUMENT...]
# The prefix is made on first use, in the build folder.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
. "$root/scripts/wine_env.sh"
exec wine "$@"

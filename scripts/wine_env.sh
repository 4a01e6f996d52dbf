# Sourced, with $root set: the environment in which Windows programs of this project run under Wine.
# Makes the prefix on first use, so that no user's own Wine set-up is touched or matters.

export WINEPREFIX="${KORVANE_WINEPREFIX:-$root/build/wine}"
export WINEARCH=win32 WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
export LC_ALL=zh_CN.UTF-8  # Chinese texts on the system's own buttons, code page 936

make_wine_prefix() {
    mkdir -p "$(dirname "$WINEPREFIX")"
    # The prefix holds what this file asks for; made by another version of it, it is made anew.
    local marker="$WINEPREFIX/korvane-ready" version
    version=$(cksum <"$root/scripts/wine_env.sh")
    [ "$(cat "$marker" 2>/dev/null)" != "$version" ] || return 0
    rm -rf "$WINEPREFIX"
    wineboot -i </dev/null >/dev/null 2>&1 || true
    local settings
    settings=$(mktemp --suffix=.reg)
    {
        printf 'REGEDIT4\n\n[HKEY_CURRENT_USER\\Software\\Wine\\Fonts\\Replacements]\n'
        for font in SimSun NSimSun Tahoma "MS Shell Dlg" "MS Shell Dlg 2" "Microsoft YaHei"; do
            printf '"%s"="WenQuanYi Micro Hei"\n' "$font"
        done
        # Without a window manager a managed window waits two seconds for an answer at each close.
        printf '\n[HKEY_CURRENT_USER\\Software\\Wine\\X11 Driver]\n"Managed"="N"\n'
        # A program that crashes ends with its error code: no debugger, and no box that waits.
        printf '\n[HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows NT\\CurrentVersion\\AeDebug]\n"Debugger"="cmd /c exit %%ld %%ld"\n'
    } >"$settings"
    # Wine's own signs on its caption buttons and menus, which it looks for beside its other data.
    cp /usr/share/wine/fonts/marlett.ttf "$WINEPREFIX/drive_c/windows/Fonts/"
    wine regedit /S "$settings" </dev/null >/dev/null 2>&1
    rm -f "$settings"
    wineserver -w
    [ -e "$WINEPREFIX/system.reg" ] || { echo "wine: the prefix $WINEPREFIX could not be made" >&2; return 1; }
    echo "$version" >"$marker"
}

(
    # Two programs may start at once; one makes the prefix, the other waits.
    mkdir -p "$(dirname "$WINEPREFIX")"
    flock 9
    make_wine_prefix
) 9>"$(dirname "$WINEPREFIX")/.wine.lock"

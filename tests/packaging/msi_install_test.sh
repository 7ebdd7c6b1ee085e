#!/usr/bin/env bash
# Installs the MSI silently in a fresh Wine prefix, over an older version of itself, then a
# rebuild of the same version over it; checks the files, that the system lists it once, that a
# host program living elsewhere loads the installed plug-in; installs it again into the folder the
# host's registry names; uninstalls and checks that everything it installed is gone.
#   msi_install_test.sh PACKAGE.msi STAGE_DIR WXS QVO_HOST_EXE
set -euo pipefail
msi=$1 stage=$2 wxs=$3 qvo_host=$4

work=$(mktemp -d)
export WINEPREFIX="$work/prefix" WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
# The prefix's server and services still write into it for a moment after the last program ends.
trap 'wineserver -k 2>/dev/null; wineserver -w 2>/dev/null; rm -rf "$work"' EXIT
wineboot --init >/dev/null 2>&1

failures=0
fail() { echo "FAILED: $*"; failures=$((failures + 1)); }
check() { if eval "$1"; then echo "ok: $2"; else fail "$2"; fi; }

drive="$WINEPREFIX/drive_c"
default_dir="$drive/Program Files/Adobe/Common/Plug-ins/7.0/MediaCore/QuorvelOmniImporter"
registry_dir="$drive/Adobe Plugins/MediaCore/QuorvelOmniImporter"
listed() { wine reg query 'HKLM\Software\Microsoft\Windows\CurrentVersion\Uninstall' /s 2>/dev/null |
             tr -d '\r' | grep -c 'DisplayName.*Quorvel Omni Importer' || true; }

# An older release, made from the same stage with a lower version.
(cd "$stage" && wixl -a x64 -D Version=0.0.1 -o "$work/older.msi" "$wxs")
wine msiexec /i "$work/older.msi" /qn
check '[ -f "$default_dir/QuorvelOmniImporter.prm" ]' "the older release installs"

wine msiexec /i "$msi" /qn
for file in QuorvelOmniImporter.prm OmniStitcher.dll; do
  check 'cmp -s "$stage/$file" "$default_dir/$file"' "$file installed, from this release"
done
check '[ "$(listed)" = 1 ]' "the upgrade replaced the older release: one entry in the program list"

# A rebuild of the same version, made by the package folder's own script from a stage whose
# plug-in differs (bytes past its end, which Windows loads without reading).
rebuild="$work/rebuild"
mkdir -p "$rebuild"
cp -r "$stage" "$(dirname "$msi")/make_packages.cmake" "$(dirname "$msi")/QuorvelOmniImporter.wxs" \
  "$rebuild/"
printf 'rebuilt' >>"$rebuild/stage/QuorvelOmniImporter.prm"
cmake -P "$rebuild/make_packages.cmake"
rebuilt_msi="$rebuild/$(basename "$msi")"
wine msiexec /i "$rebuilt_msi" /qn
check 'cmp -s "$rebuild/stage/QuorvelOmniImporter.prm" "$default_dir/QuorvelOmniImporter.prm"' \
  "a rebuild of the same version installs its files"
check '[ "$(listed)" = 1 ]' "and replaces the installed one: one entry in the program list"

mkdir -p "$work/host"
cp "$qvo_host" "$work/host/qvo-host.exe"
echo '{"width": 64, "height": 32}' >"$work/host/clip.qvo"
info=$(wine "$work/host/qvo-host.exe" info "$(winepath -w "$work/host/clip.qvo")" \
         --plugin 'C:\Program Files\Adobe\Common\Plug-ins\7.0\MediaCore\QuorvelOmniImporter\QuorvelOmniImporter.prm' 2>&1 |
       tr -d '\r')
check 'grep -q "^  picture        64 x 32$" <<<"$info"' "a host program elsewhere imports through the installed plug-in"

wine msiexec /x "$rebuilt_msi" /qn
check '[ ! -e "$default_dir" ]' "uninstalling removes the plug-in's folder"
check '[ "$(listed)" = 0 ]' "uninstalling removes the program-list entry"

# The host made its folder when it wrote the value.
mkdir -p "$(dirname "$registry_dir")"
wine reg add 'HKLM\SOFTWARE\Adobe\Premiere Pro\24.0' /v CommonPluginInstallPath \
  /d 'C:\Adobe Plugins\MediaCore\' /f >/dev/null 2>&1
wine msiexec /i "$msi" /qn
check '[ -f "$registry_dir/QuorvelOmniImporter.prm" ] && [ -f "$registry_dir/OmniStitcher.dll" ]' \
  "installs into the common plug-in folder that the host's registry names"
check '[ ! -e "$default_dir" ]' "and nowhere else"
wine msiexec /x "$msi" /qn
check '[ ! -e "$registry_dir" ]' "uninstalling removes it from there"

[ "$failures" -eq 0 ]

#!/usr/bin/env bash
# Sets up this machine, builds the plug-in, and has the host simulator drive it: natively, then
# the shipped .prm under Wine. The native run also exports frames and sound, and lets the command
# server stand-in ask for media information and push a parameter update.
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/setup.sh
export QUORVEL_WINEPREFIX="$PWD/build/wineprefix"
./scripts/build.sh linux windows >/dev/null

# On Linux the plug-in gets a profile folder of the demo's own, laid out as on Windows; the port
# file of the command server goes under the same folder.
out="$PWD/build/demo"
profile="$out/profile"
rm -rf "$out"
mkdir -p "$profile/AppData/Local"
export USERPROFILE="$profile" HOMEDRIVE="$(dirname "$profile")" HOMEPATH="/$(basename "$profile")"
bin=build/linux/bin

echo "=== linux build: start-up and file information ==="
$bin/qvo-host start-up
$bin/qvo-host info samples/*.qvo
$bin/qvo-host info samples/*.qvo --json >"$out/report.json"

echo
echo "=== linux build: frames 0 to 29 and the sound of samples/mono_4k.qvo ==="
$bin/qvo-host frames samples/mono_4k.qvo --range 0:30 --out "$out/frames"
$bin/qvo-host audio samples/mono_4k.qvo --out "$out/mono_4k.wav"

echo
echo "=== linux build: the command server asks and updates while the host shows two clips ==="
$bin/qvo-command-server --home "$profile" --media-info "$PWD/samples/mono_4k.qvo" \
  --update "$PWD/samples/mono_4k.qvo" &
server=$!
sleep 0.5
$bin/qvo-host serve samples/mono_4k.qvo samples/silent.qvo --seconds 8
wait "$server"
log="$profile/AppData/Local/quorvel/Adobe/Plugin.log"
echo "--- end of Plugin.log ---"
tail -n 6 "$log"

echo
echo "=== windows build: QuorvelOmniImporter.prm under Wine ==="
cmake/wine-run.sh build/windows/bin/qvo-host.exe start-up
cmake/wine-run.sh build/windows/bin/qvo-host.exe info samples/*.qvo
cmake/wine-run.sh build/windows/bin/qvo-host.exe frames samples/stereo_3d.qvo --range 0:6 \
  --out build/demo/frames_windows
windows_log="$QUORVEL_WINEPREFIX/drive_c/users/$(whoami)/AppData/Local/quorvel/Adobe/Plugin.log"
echo "--- end of Plugin.log ---"
tail -n 3 "$windows_log"

echo
echo "=== what the log says happened (qvo-host log-report) ==="
$bin/qvo-host log-report "$log" --png "$out/stitching_time.png"

cat <<SUMMARY

=== summary ===
Imported through the plug-in: $(cd samples && echo *.qvo)
  frames 0-29 of mono_4k.qvo   $out/frames/frame_00000.png ... frame_00029.png
  contact sheet                $out/frames/contact_sheet.png
  stereo frames under Wine     $out/frames_windows/contact_sheet.png
  sound of mono_4k.qvo         $out/mono_4k.wav
  what the host learned        $out/report.json
  stitching time per frame     $out/stitching_time.png
  Plugin.log (linux build)     $log, $(wc -l <"$log") lines
  Plugin.log (under Wine)      $windows_log, $(wc -l <"$windows_log") lines
SUMMARY

#!/usr/bin/env bash
# Makes a picture of every window: pictures.sh BUILD_FOLDER OUT_FOLDER. Fails when one is empty.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
[ $# -eq 2 ] || { echo "usage: scripts/pictures.sh BUILD_FOLDER OUT_FOLDER" >&2; exit 2; }
cmake --build "$1" --target merivane_window_pictures merivane-batch -- --quiet
exec 9> /tmp/merivane-pictures.lock # all runs use the same folders, so that the pictures are alike
flock 9
export HOME=/tmp/merivane-pictures LC_ALL=C.UTF-8 QT_QPA_PLATFORM=xcb
mkdir -p "$2" "$HOME"
rm -f "$HOME"/festival.mdb*
xvfb-run -a -s "-screen 0 2560x1600x24 -dpi 96" "$1/bin/merivane_window_pictures" "$root/samples" "$2"
"$1/bin/merivane-batch" to-project "$root/samples/festival.txt" --database "$HOME/festival.mdb" \
  --overwrite --choose "Sale by mail order" --quiet
"$1/bin/merivane-batch" draw --database "$HOME/festival.mdb" --project 1 --scenario "Stage building" \
  --objects --output "$2/diagram.png" --force --quiet
"$1/bin/merivane-batch" chart "$HOME/festival.mdb" --project 1 --today 6/1/2026 \
  --output "$2/chart.png" --force --quiet
if command -v chromium > /dev/null; then
  "$1/bin/merivane-batch" report "$root/samples/festival.txt" --choose "Sale by mail order" \
    --today 6/1/2026 --output "$HOME/festival.html" --force --quiet
  chromium --headless=new --no-sandbox --disable-gpu --hide-scrollbars --user-data-dir="$HOME/chromium" \
    --window-size=1100,1000 --screenshot="$2/report.png" "file://$HOME/festival.html" 2> "$HOME/chromium.log"
fi
for name in log check preview proof merge-pictures diagram chart view-diagram workbench main model-to-project model-to-mpx project-to-model mpx-to-model append merge choose \
  message paths about splash help; do
  [ -s "$2/$name.png" ] || { echo "$2/$name.png is missing" >&2; exit 1; }
done

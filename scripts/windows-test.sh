#!/usr/bin/env bash
# The Windows part of the test command: cross-builds the DLLs and suites with MinGW-w64
# (preset windows, build-windows/), runs the suites under Wine in a virtual X server, runs the
# Win32 example host in a real window and keeps its screenshot, builds a MinGW consumer
# against the installed tree with find_package(KyGraph CONFIG) and runs it, and compares the
# default chart drawn by GDI with the same chart drawn by the Cairo backend in aliased mode.
#   LINUX_BUILD   Linux build folder holding bin/kygraph, for the comparison (default: build)
set -euo pipefail
cd "$(dirname "$0")/.."
root=$(pwd)
linux_build=${LINUX_BUILD:-build}

need=(x86_64-w64-mingw32-g++-posix wine xvfb-run)
for tool in "${need[@]}"; do
  command -v "$tool" >/dev/null || { bash scripts/install-deps.sh; break; }
done

cmake --preset windows >/dev/null
cmake --build --preset windows

export WINEDEBUG=-all
export WINEPREFIX=$root/build-windows/wineprefix
# A prefix is made once per build folder (about 20 s). The chart's default face is the
# system's default; Wine has no Chinese one, so the usual default faces are replaced by
# Noto Sans CJK SC (from fonts-noto-cjk), as a Chinese Windows would show them.
if [ ! -f "$WINEPREFIX/.kygraph-ready" ]; then
  rm -rf "$WINEPREFIX"
  xvfb-run -a wineboot -i >/dev/null 2>&1
  for face in "Arial" "Times New Roman" "Tahoma" "Microsoft Sans Serif" "MS Shell Dlg" "MS Shell Dlg 2" \
              "System" "SimSun" "Courier New"; do
    wine reg add 'HKCU\Software\Wine\Fonts\Replacements' /v "$face" /t REG_SZ /d "Noto Sans CJK SC" /f >/dev/null 2>&1
  done
  wineserver -w
  touch "$WINEPREFIX/.kygraph-ready"
fi

# One X server and one wineserver for every Wine process that follows.
work=$(mktemp -d "${TMPDIR:-/tmp}/kygraph-windows.XXXXXX")
cleanup() { wineserver -k 2>/dev/null || true; rm -rf "$work"; }
trap cleanup EXIT
cat >"$work/run.sh" <<'INNER'
set -euo pipefail
wineserver -p
# Wine's background services start with the first program; started here, they do not hold
# ctest's output pipe open after the test that happened to start them has ended.
wine cmd /c exit >/dev/null 2>&1 </dev/null
ctest --preset windows
cd build-windows/bin
timeout 120 wine win32_host.exe --screenshot ../win32_host.png
timeout 120 wine win32_host.exe --render "$WORK/gdi.png"
INNER
WORK=$work xvfb-run -a -s "-screen 0 1280x1024x24" bash "$work/run.sh"
echo "windows-test: the example host's screenshot is build-windows/win32_host.png"

# The installed tree, used by a MinGW host through find_package(KyGraph CONFIG).
cmake --install build-windows --prefix "$work/prefix" >/dev/null
cmake -S tests/consumer -B "$work/consumer" -G Ninja -DCMAKE_BUILD_TYPE=Release \
  -DCMAKE_TOOLCHAIN_FILE="$root/cmake/mingw-w64-x86_64.cmake" -DCMAKE_PREFIX_PATH="$work/prefix" >/dev/null
cmake --build "$work/consumer" >/dev/null
# The KyGraph DLLs carry their C++ runtime inside; the host ships its own toolchain's, as any
# MinGW program does.
cp "$work/prefix/bin/"*.dll "$work/consumer/"
cp "$(dirname "$(x86_64-w64-mingw32-g++-posix -print-libgcc-file-name)")"/{libstdc++-6.dll,libgcc_s_seh-1.dll} \
  /usr/x86_64-w64-mingw32/lib/libwinpthread-1.dll "$work/consumer/"
(cd "$work/consumer" && xvfb-run -a wine consumer_check.exe)

# GDI against the Cairo backend's aliased mode. Lines, ellipses and arcs follow the same GDI
# rules on both, so nearly all of their pixels agree to within one; glyphs of two rasterisers
# and faces differ in shape and size, which is what the tolerance of ink leaves room for. Wine
# stands Noto Sans CJK in for the chart's Chinese face, and that face's cell is 1.45 em, so
# GDI's glyphs here are smaller than those of Windows' own Chinese faces, which fill their cell
# as the Cairo backend's do: text is a tenth of the ink, hence 88 %.
if [ -x "$linux_build/bin/kygraph" ]; then
  "$linux_build/bin/kygraph" render --antialias off --size 1000x800 -o "$work/cairo.png"
  python3 scripts/compare-images.py "$work/gdi.png" "$work/cairo.png" --min-match 88
fi
echo "windows-test: OK"

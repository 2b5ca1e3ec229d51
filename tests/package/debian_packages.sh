#!/usr/bin/env bash
# The Debian packages in a fresh Debian that is booted for it; see debian_packages_inside.sh for what is tried there. Run by
# scripts/package-debian --check: it needs root and a network.
#   debian_packages.sh FOLDER
# FOLDER has the packages; the fresh Debian is kept there for the next time, and what was said is in its folder "result".
set -euo pipefail
packages=$(realpath "$1")
here=$(realpath "$(dirname "$0")")
base=$packages/base

if [ ! -e "$base.ready" ]; then
    rm -rf "$base"
    debootstrap --variant=minbase --include=systemd-sysv,dbus bookworm "$base"
    touch "$base.ready"
fi

# Fetched beforehand, because the booted system has no network but its loopback: nothing gets in its way there.
rm -rf "$base/packages"
mkdir "$base/packages"
cp "$packages"/*.deb "$base/packages"
cp /etc/resolv.conf "$base/etc/resolv.conf"
download() { chroot "$base" env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends --download-only "$@"; }
chroot "$base" apt-get update
mapfile -t names < <(cd "$packages" && find . -maxdepth 1 -name '*.deb' ! -name '*-dbgsym_*' -printf '/packages/%f\n')
download "${names[@]}" g++ cmake ninja-build pkg-config

cp "$here/debian_packages_inside.sh" "$base/packages/try"
cat >"$base/etc/systemd/system/try-packages.service" <<'UNIT'
[Unit]
Description=Try the packages
After=multi-user.target

[Service]
Type=oneshot
ExecStart=/packages/try
ExecStopPost=/bin/sh -c 'exec systemctl exit "$EXIT_STATUS"'
StandardOutput=file:/result/log
StandardError=inherit
UNIT
mkdir -p "$base/etc/systemd/system/graphical.target.wants"
ln -sf ../try-packages.service "$base/etc/systemd/system/graphical.target.wants/"
# On a copy of it that goes away.
result=$packages/result
rm -rf "$result"
mkdir "$result"
timeout 900 systemd-nspawn --quiet --directory="$base" --ephemeral --bind="$result:/result" --boot --private-network \
    --register=no --keep-unit --console=pipe </dev/null >"$result/console" 2>&1 || {
    cat "$result/console" "$result/log"
    echo "FAIL!  : see above, or $result"
    exit 1
}
cat "$result/log"
echo "PASS   : installed, used and removed in a fresh Debian"

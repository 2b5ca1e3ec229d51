#!/bin/bash
# Runs in a fresh Debian for debian_packages.sh: installs the packages, uses them as their users do, removes them.
set -euo pipefail
export DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8 HOME=/root
data=/var/lib/vell-service
address=http://127.0.0.1:8080/
fail() {
    echo "FAIL!  : $*"
    journalctl --no-pager --lines 20 --unit vell-service || true
    exit 1
}
trap 'fail "line $LINENO"' ERR
install() { apt-get install -y -qq --no-install-recommends "$@" >/tmp/apt.log 2>&1 || fail "$(cat /tmp/apt.log)"; }
ours() { find / -xdev -path /packages -prune -o -iname '*vell*' -print | sort; }
as_service() { runuser -u vell-service -- vell-service "$@" --data $data; }
answers() {
    for _ in $(seq 300); do
        ! velldoc ls >/tmp/said 2>&1 || return 0
        sleep 0.1
    done
    fail "the service does not answer: $(cat /tmp/said)"
}
runs_as_installed() {
    systemctl is-active --quiet vell-service || fail "the service does not run"
    systemctl is-enabled --quiet vell-service || fail "the service will not run after the next start"
    [ "$(stat -c %U "/proc/$(systemctl show -P MainPID vell-service)")" = vell-service ] || fail "it runs as somebody else"
    [ "$(stat -c '%U %a' $data)" = "vell-service 700" ] || fail "the data folder is $(stat -c '%U %a' $data)"
}

before=$(ours)
echo "--- service and command line"
install /packages/{libvelldocumentdata0*,libvelldocumentdata-l10n,velldoc,vell-service}_*.deb
runs_as_installed
as_service user add anna >/tmp/token
as_service project add bridge --name "The bridge"
as_service role set bridge anna owner
VELLDOC_TOKEN=$(tail -n 1 /tmp/token)
export VELLDOC_TOKEN VELLDOC_URL=$address VELLDOC_PROJECT=bridge
answers
head -c 9000000 /dev/urandom >/tmp/scan.zip # more than two chunks
velldoc put /tmp/scan.zip /
velldoc get /scan.zip - | cmp - /tmp/scan.zip || fail "the file came back changed"
velldoc find '*can*' / | grep -q scan.zip || fail "a pattern does not find the file"

echo "--- settings, restart, another version"
# Of this machine, and so nothing that a new version may replace.
echo 'VELL_SERVICE_OPTIONS="--access-log - --listen 127.0.0.1:9090"' >/etc/default/vell-service
export VELLDOC_URL=http://127.0.0.1:9090/
systemctl restart vell-service
answers
systemctl reload vell-service
answers
journalctl -u vell-service | grep -q 'GET /base-service/' || fail "the requests are not in the journal: $(journalctl -u vell-service)"
install --reinstall /packages/vell-service_*.deb
runs_as_installed
answers
velldoc get /scan.zip - | cmp - /tmp/scan.zip || fail "the file is another one after the new version"
as_service backup /tmp/backup
as_service check

echo "--- hardening"
for setting in NoNewPrivileges=yes MemoryDenyWriteExecute=yes ProtectSystem=strict CapabilityBoundingSet=; do
    [ "$(systemctl show -p "${setting%%=*}" vell-service)" = "$setting" ] || fail "the service runs without $setting"
done
grep -q '^Seccomp:[[:space:]]*2' "/proc/$(systemctl show -P MainPID vell-service)/status" || fail "no system call is refused"
systemd-analyze --no-pager security vell-service | tail -n 1

echo "--- development"
install /packages/libvelldocumentdata-dev_*.deb
install g++ cmake ninja-build pkg-config
example=/usr/share/doc/libvelldocumentdata-dev/examples/minimal
cmake -G Ninja -S $example -B /tmp/minimal
cmake --build /tmp/minimal
/tmp/minimal/minimal $VELLDOC_URL bridge "$VELLDOC_TOKEN" | grep -qx 'dir Drawings' || fail "the example does not see its folder"
# shellcheck disable=SC2046 # words are what it gives
g++ -fPIC -o /tmp/by-hand $example/main.cpp $(pkg-config --cflags --libs VellDocumentData)
/tmp/by-hand $VELLDOC_URL bridge "$VELLDOC_TOKEN" | grep -qx 'file scan.zip' || fail "the example does not see the file"
pkg-config --exists --print-errors VellClient VellNetwork VellPublicFun VellSoftBase

echo "--- desktop client and documentation"
install /packages/{vell-desktop,libvelldocumentdata-doc}_*.deb
QT_QPA_PLATFORM=offscreen vell-desktop --version
[ -s /usr/share/qt5/doc/VellDocumentData.qch ] || fail "there is no help file"

echo "--- removal"
! dpkg --verify libvelldocumentdata0.1 libvelldocumentdata-dev velldoc vell-desktop vell-service | grep -v /etc/default \
    || fail "these files are not as they were installed"
apt-get remove -y -qq vell-service >/tmp/apt.log 2>&1 || fail "$(cat /tmp/apt.log)"
! systemctl is-active --quiet vell-service || fail "the service still runs"
[ -e /etc/default/vell-service ] || fail "the settings went before they were purged"
apt-get purge -y -qq vell-service velldoc vell-desktop 'libvelldocumentdata*' >/tmp/apt.log 2>&1 || fail "$(cat /tmp/apt.log)"
left=$(comm -13 <(echo "$before") <(ours) | grep -v "^/tmp/") || true
[ "$left" = $data ] || fail "left behind: $left"
[ -s $data/records.sqlite ] || fail "the documents went with the program"
echo "--- all is well"

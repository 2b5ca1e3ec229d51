#!/usr/bin/env bash
# The example configuration of nginx is one that nginx takes, and a file goes through it over TLS in both directions.
#   nginx_example.sh SOURCE BUILD
set -euo pipefail
source=$1 build=$2
source "$source/tests/support/with_service.sh"
nginx=$(PATH=$PATH:/usr/sbin command -v nginx) || fail "nginx is missing; scripts/setup installs it"

start_service "$build/bin/vell-service"
read -r plain encrypted < <(python3 -c '
import socket
sockets = [socket.create_server(("127.0.0.1", 0)) for _ in range(2)]
print(*(s.getsockname()[1] for s in sockets))')

openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -days 2 -subj /CN=127.0.0.1 \
    -addext subjectAltName=IP:127.0.0.1 -keyout "$work/key.pem" -out "$work/certificate.pem" 2>"$work/openssl.log"

# Only what belongs to a machine is replaced.
sed -e "s|server 127.0.0.1:8080;|server ${address#http://};|; s|/;$|;|" \
    -e "s|listen 80;|listen 127.0.0.1:$plain;|; s|listen 443 ssl;|listen 127.0.0.1:$encrypted ssl;|; /listen \[::\]/d" \
    -e "s|/etc/ssl/certs/.*;|$work/certificate.pem;|; s|/etc/ssl/private/.*;|$work/key.pem;|" \
    "$source/packaging/service/nginx.conf" >"$work/site.conf"
cat >"$work/nginx.conf" <<CONF
daemon off;
pid nginx.pid;
events {}
http {
    access_log off;
    client_body_temp_path body;
    proxy_temp_path proxy;
    fastcgi_temp_path fastcgi;
    uwsgi_temp_path uwsgi;
    scgi_temp_path scgi;
    include site.conf;
}
CONF
nginx_command=("$nginx" -p "$work/" -c nginx.conf -e error.log)
"${nginx_command[@]}" -t 2>"$work/nginx.log" || fail "nginx refuses it: $(cat "$work/nginx.log")"
! grep -E 'warn' "$work/nginx.log" || fail "nginx has a warning about it"

"${nginx_command[@]}" &
nginx_pid=$!
disown "$nginx_pid"
trap 'kill "$nginx_pid" 2>/dev/null || true; cleanup' EXIT
velldoc=("$build/bin/velldoc" --url "https://127.0.0.1:$encrypted/" --cacert "$work/certificate.pem" --project example)
for _ in $(seq 300); do
    ! "${velldoc[@]}" ls >"$work/said" 2>&1 || break
    kill -0 "$nginx_pid" 2>/dev/null || fail "nginx ended: $(cat "$work/error.log")"
    sleep 0.1
done

# More than two chunks.
head -c 9000000 /dev/urandom >"$work/scan.zip"
"${velldoc[@]}" put "$work/scan.zip" / 2>"$work/said" || fail "velldoc put said: $(cat "$work/said")"
"${velldoc[@]}" get /scan.zip - 2>"$work/said" | cmp - "$work/scan.zip" || fail "it came back changed: $(cat "$work/said")"

# Without TLS nobody gets anything.
answer=$(curl -sS -o "$work/answer" -w '%{http_code} %{redirect_url}' "http://127.0.0.1:$plain/document-service/x?y=z")
[ "$answer" = "301 https://127.0.0.1/document-service/x?y=z" ] || fail "without TLS it answers $answer"
echo "PASS   : nginx takes the example, and a file goes through it over TLS"

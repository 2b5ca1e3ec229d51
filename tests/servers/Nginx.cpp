#include "Nginx.h"

bool Nginx::start(const Settings &settings)
{
    if (m_port == 0)
        m_port = ServerProgram::freePort();
    m_isEncrypted = !settings.certificate.certificate.isEmpty();
    QByteArray text = "daemon off;\n"
                      "worker_processes 1;\n"
                      "pid nginx.pid;\n"
                      "error_log error.log;\n"
                      "events {}\n"
                      "http {\n"
                      "access_log off;\n"
                      "client_body_temp_path body;\n"
                      "proxy_temp_path proxy;\n"
                      "fastcgi_temp_path fastcgi;\n"
                      "uwsgi_temp_path uwsgi;\n"
                      "scgi_temp_path scgi;\n"
        + settings.http + "\nserver {\nlisten 127.0.0.1:" + QByteArray::number(m_port)
        + (m_isEncrypted ? " ssl" : "") + (settings.isHttp2 ? " http2" : "") + ";\n";
    if (m_isEncrypted) {
        text += "ssl_certificate " + settings.certificate.certificate.toUtf8()
            + ";\nssl_certificate_key " + settings.certificate.key.toUtf8() + ";\n";
    }
    text += "location / {\nproxy_pass http://127.0.0.1:" + QByteArray::number(settings.servicePort)
        + ";\nproxy_set_header Host $http_host;\n" + settings.location + "\n}\n}\n}\n";
    const QString configuration = m_program.write("nginx.conf", text);
    // The path of the log is for what happens before the configuration is read.
    return m_program.start(
        "/usr/sbin/nginx",
        {"-p", m_program.path(QString()), "-c", configuration, "-e", "error.log"}, m_port);
}

QString Nginx::baseApi() const
{
    return QString("%1://127.0.0.1:%2/")
        .arg(m_isEncrypted ? QString("https") : QString("http"))
        .arg(m_port);
}

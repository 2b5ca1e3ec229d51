#include "Haproxy.h"

#include <QFile>

bool Haproxy::start(const QList<quint16> &servicePorts)
{
    QFile example(QStringLiteral(VELL_HAPROXY_EXAMPLE));
    if (!example.open(QIODevice::ReadOnly))
        return false;
    QByteArray text = example.readAll();
    m_port = ServerProgram::freePort();
    QByteArray from = "127.0.0.1:8000";
    text.replace(from, "127.0.0.1:" + QByteArray::number(m_port));
    for (int i = 0; i < servicePorts.size(); ++i) {
        from = "127.0.0.1:" + QByteArray::number(8081 + i);
        text.replace(from, "127.0.0.1:" + QByteArray::number(servicePorts.at(i)));
    }
    return m_program.start("haproxy", {"-f", m_program.write("haproxy.cfg", text)}, m_port);
}

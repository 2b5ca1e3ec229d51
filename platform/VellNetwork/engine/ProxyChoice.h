#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

//! Returns the address of the proxy for a request to \a url; empty for none.
//!
//! \param setting see NetworkSettings::setProxy()
//!
//! May take long on Windows, where the system may run a script of the network; there the result for a server is cached for
//! some time.
QByteArray proxyFor(const QUrl &url, const QString &setting);

//! Returns true if proxyFor() returns at once.
bool isProxyAtHand(const QUrl &url, const QString &setting);

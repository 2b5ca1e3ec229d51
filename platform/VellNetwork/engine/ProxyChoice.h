#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

//! The address of the proxy that a request to \a url goes over; empty for none.
//!
//! \param setting as of NetworkSettings::setProxy()
//!
//! May take long on Windows, where the system runs the script that a network gives; the answer for
//! a server is kept for a while there.
QByteArray proxyFor(const QUrl &url, const QString &setting);

//! Whether proxyFor() returns at once.
bool isProxyAtHand(const QUrl &url, const QString &setting);

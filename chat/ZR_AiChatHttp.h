#pragma once

#include <QString>

class QNetworkRequest;

/// Paths begin with a slash.
QString zentriServiceUrl(const QString& path);

/// Sets what every request to the service carries: that its body is JSON, and the access token as it is,
/// without a scheme word.
void setZentriRequestHeaders(QNetworkRequest& request);

/// Posts an empty JSON object and waits, with a local event loop, until the whole reply is there. False on a
/// transport error, an HTTP error status or when the calling thread is told to quit; `body` is then left
/// alone. The callers name the service's own port, but requests go to the base address as it is: the port
/// stays out of the URL.
bool postToZentriService(const QString& path, int port, QString& body);

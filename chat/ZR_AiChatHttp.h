#pragma once

#include <afx.h>

#include <QString>

class QNetworkRequest;

/// The URL of a call to the service; `path` begins with a slash.
QString zentriServiceUrl(const QString& path);

/// Sets the headers that every request carries: the JSON content type, and the access token as it is, without
/// an authentication scheme.
void setZentriRequestHeaders(QNetworkRequest& request, const CString& token);

/// Posts an empty JSON object and blocks, with a local event loop, until the whole reply has been received.
/// False on a transport error, an HTTP error status or when the calling thread is asked to quit; `body` is
/// then unchanged. `port` is part of the interface; nothing in the module reads it: requests go to the base
/// address as it is.
bool postToZentriService(const QString& path, int port, const CString& token, QString& body);

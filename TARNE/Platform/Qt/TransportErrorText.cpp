#include "TransportErrorText.h"

using namespace Qt::StringLiterals;

namespace tarne {

QString transportErrorText(QNetworkReply::NetworkError error) {
    switch (error) {
    case QNetworkReply::HostNotFoundError:
    case QNetworkReply::TemporaryNetworkFailureError:
    case QNetworkReply::NetworkSessionFailedError:
        return u"The server could not be found. Is this computer online?"_s;
    case QNetworkReply::ConnectionRefusedError:
        return u"The server refused the connection."_s;
    case QNetworkReply::RemoteHostClosedError:
    case QNetworkReply::ContentReSendError:
        return u"The connection was lost before the answer was complete."_s;
    case QNetworkReply::TimeoutError:
    case QNetworkReply::OperationCanceledError: // Qt's name for a silence that lasted too long.
        return u"The request timed out."_s;
    case QNetworkReply::SslHandshakeFailedError:
        return u"A secure connection to the server could not be made."_s;
    case QNetworkReply::InsecureRedirectError:
    case QNetworkReply::TooManyRedirectsError:
        return u"The server sent the request elsewhere."_s;
    case QNetworkReply::ProxyConnectionRefusedError:
    case QNetworkReply::ProxyConnectionClosedError:
    case QNetworkReply::ProxyNotFoundError:
    case QNetworkReply::ProxyTimeoutError:
    case QNetworkReply::ProxyAuthenticationRequiredError:
    case QNetworkReply::UnknownProxyError:
        return u"The proxy did not pass the request on."_s;
    case QNetworkReply::ProtocolFailure:
        return u"The server's answer could not be understood."_s;
    default:
        return u"The network connection failed."_s;
    }
}

bool isErrorStatus(QNetworkReply::NetworkError error) {
    switch (error) {
    case QNetworkReply::ContentAccessDenied:
    case QNetworkReply::ContentOperationNotPermittedError:
    case QNetworkReply::ContentNotFoundError:
    case QNetworkReply::AuthenticationRequiredError:
    case QNetworkReply::ContentConflictError:
    case QNetworkReply::ContentGoneError:
    case QNetworkReply::UnknownContentError:
    case QNetworkReply::InternalServerError:
    case QNetworkReply::OperationNotImplementedError:
    case QNetworkReply::ServiceUnavailableError:
    case QNetworkReply::UnknownServerError:
    case QNetworkReply::ProtocolInvalidOperationError: // 400
        return true;
    default:
        return false;
    }
}

} // namespace tarne

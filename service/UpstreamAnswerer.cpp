#include "service/UpstreamAnswerer.h"

#include <httplib.h>

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <thread>
#include <utility>

#include "service/Text.h"
#include "service/UpstreamParser.h"

namespace zentri::service {

namespace {

constexpr std::string_view kCompletions = "/chat/completions";
constexpr std::chrono::seconds kLongestConnect{10};
constexpr std::chrono::milliseconds kLookForClient{100};
/// Limit in bytes for a reply that is not an event stream (an error page, a complete answer).
constexpr std::size_t kLargestPlainBody = 4U << 20U;
constexpr std::size_t kLongestErrorText = 300;
/// Number of latest messages to send, so that a long session does not exceed the model's context window.
constexpr std::size_t kMostMessages = 40;
constexpr int kHttpOk = 200;

constexpr const char* kInstructions =
    "你是 CAD 软件里的制图助手。用提问所用的语言，简洁、分步骤地回答制图问题，用纯文本，不用 Markdown。"
    "提到可以直接执行的命令时，把英文命令名写在【】里，例如【CIRCLE】，括号里只写命令名。";

/// State shared between the thread that serves the client and the one that runs the upstream request. The
/// request has a thread of its own so that a disconnected client and a stopping service are noticed while the
/// server is silent.
class Exchange {
public:
    /// Request thread: adds a piece of the answer. False: stop reading.
    bool push(std::string_view text) {
        const std::lock_guard lock(m_mutex);
        m_text += text;
        m_changed.notify_all();
        return !m_aborted;
    }

    bool aborted() const {
        const std::lock_guard lock(m_mutex);
        return m_aborted;
    }

    /// Request thread: the request has ended, with an error message or an empty string.
    void end(std::string error) {
        const std::lock_guard lock(m_mutex);
        m_error = std::move(error);
        m_ended = true;
        m_changed.notify_all();
    }

    /// Client thread: returns what has arrived since the last call, after waiting briefly for it.
    std::string take(bool& ended) {
        std::unique_lock lock(m_mutex);
        m_changed.wait_for(lock, kLookForClient, [this] { return m_ended || !m_text.empty(); });
        ended = m_ended;
        return std::exchange(m_text, {});
    }

    /// Client thread: asks the request to stop reading.
    void abort() {
        const std::lock_guard lock(m_mutex);
        m_aborted = true;
    }

    /// Client thread: the error message; to be read only after the request thread has been joined.
    const std::string& error() const { return m_error; }

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::string m_text;
    std::string m_error;
    bool m_ended = false;
    bool m_aborted = false;
};

std::string shortened(const std::string& text) {
    const std::string line = oneLine(text);
    const std::string_view cut = firstCodePoints(line, kLongestErrorText);
    return std::string(cut) + (cut.size() < line.size() ? "…" : "");
}

/// Replaces invalid UTF-8 in the server's text, so that it can be put into JSON and the database.
std::string asUtf8(const std::string& bytes) {
    std::string text;
    for (std::size_t at = 0; at < bytes.size();) {
        appendUtf8(text, nextCodePoint(bytes, at));
    }
    return text;
}

std::string explainStatus(int status, const std::string& body) {
    const UpstreamDelta reply = parseCompletion(body);
    std::string why;
    if (status == 401 || status == 403) {
        why = "它不接受访问密钥，请检查环境变量 ZENTRI_UPSTREAM_KEY";
    } else if (status == 404) {
        why = "它没有这个地址或模型，请检查 --upstream 和 --upstream-model";
    } else if (status == 429) {
        why = "请求太多或额度用完，请稍后再试";
    } else if (status >= 300 && status < 400) {
        why = "它要求转到别的地址，请在 --upstream 里直接写那个地址";
    } else if (status >= 500) {
        why = "它内部出错，请稍后再试";
    } else {
        why = "它拒绝了请求";
    }
    std::string text = "上游模型服务返回 HTTP " + std::to_string(status) + "：" + why;
    if (!reply.error.empty()) {
        text += "（" + shortened(asUtf8(reply.error)) + "）";
    }
    return text;
}

std::string explainTransport(httplib::Error error) {
    switch (error) {
        case httplib::Error::Connection:
            return "连接不上上游模型服务";
        case httplib::Error::ConnectionTimeout:
            return "连接上游模型服务超时";
        case httplib::Error::Read:
            return "上游模型服务没有回应：等待超时或连接中断";
        case httplib::Error::Write:
            return "向上游模型服务发送请求失败";
        case httplib::Error::SSLConnection:
        case httplib::Error::SSLLoadingCerts:
        case httplib::Error::SSLServerVerification:
            return "与上游模型服务的加密连接失败，请检查证书";
        default:
            return "与上游模型服务通信失败（" + httplib::to_string(error) + "）";
    }
}

/// One upstream request. run() blocks until it has ended and returns an error message, empty on success.
class UpstreamRequest {
public:
    UpstreamRequest(httplib::Client& client, Exchange& exchange)
        : m_client(client),
          m_exchange(exchange),
          m_parser([this](const std::string& data) { onEvent(data); }) {}

    std::string run(httplib::Request& request) {
        request.response_handler = [this](const httplib::Response& response) {
            m_status = response.status;
            const std::string type = response.get_header_value("Content-Type");
            m_streaming = m_status == kHttpOk && type.find("json") == std::string::npos;
            return !m_exchange.aborted();
        };
        request.content_receiver = [this](const char* data, size_t length, std::uint64_t, std::uint64_t) {
            if (m_streaming) {
                m_parser.feed({data, length});
            } else if (m_body.size() + length <= kLargestPlainBody) {
                m_body.append(data, length);
            }
            // Nothing usable follows an error in the stream.
            return m_error.empty() && !m_exchange.aborted();
        };
        const httplib::Result result = m_client.send(request);
        if (m_streaming) {
            m_parser.finish();
        }
        if (!m_error.empty()) {
            return m_error;
        }
        if (m_status != 0 && m_status != kHttpOk) {
            return explainStatus(m_status, m_body);
        }
        if (m_status == kHttpOk && !m_streaming) {
            return completeReply();
        }
        if (m_finished) {
            return {};
        }
        if (m_status == 0) {
            return explainTransport(result.error());
        }
        return m_anyText ? "上游模型服务中途断开，回答不完整" : "上游模型服务没有给出回答";
    }

private:
    void onEvent(const std::string& data) {
        // Ignore what follows the end of the answer: some servers send usage statistics there.
        if (m_finished || !m_error.empty()) {
            return;
        }
        const UpstreamDelta delta = parseDelta(data);
        if (!delta.valid) {
            m_error = "上游模型服务的回答看不懂（" + shortened(asUtf8(data)) + "）";
        } else if (!delta.error.empty()) {
            m_error = "上游模型服务报告错误（" + shortened(asUtf8(delta.error)) + "）";
        }
        if (!delta.text.empty()) {
            m_anyText = true;
            m_exchange.push(delta.text);
        }
        m_finished = delta.finished;
    }

    std::string completeReply() {
        const UpstreamDelta reply = parseCompletion(m_body);
        if (!reply.error.empty()) {
            return "上游模型服务报告错误（" + shortened(asUtf8(reply.error)) + "）";
        }
        if (!reply.valid) {
            return "上游模型服务的回答看不懂（" + shortened(asUtf8(m_body)) + "）";
        }
        if (reply.text.empty()) {
            return "上游模型服务没有给出回答";
        }
        m_exchange.push(reply.text);
        return {};
    }

    httplib::Client& m_client;
    Exchange& m_exchange;
    SseParser m_parser;
    int m_status = 0;
    bool m_streaming = false;
    bool m_finished = false;
    bool m_anyText = false;
    std::string m_body;
    std::string m_error;
};

}  // namespace

UpstreamSettings upstreamFromUrl(const std::string& url) {
    const std::size_t scheme = url.find("://");
    const std::string name = url.substr(0, scheme == std::string::npos ? 0 : scheme);
    if (name != "http" && name != "https") {
        throw std::invalid_argument("the upstream URL must begin with http:// or https://, not '" + url +
                                    "'");
    }
    const std::size_t hostAt = scheme + 3;
    const std::size_t pathAt = std::min(url.find('/', hostAt), url.size());
    const std::string host = url.substr(hostAt, pathAt - hostAt);
    if (host.empty() || host.find_first_of("@?# ") != std::string::npos) {
        throw std::invalid_argument("no valid host in the upstream URL '" + url + "'");
    }
    UpstreamSettings settings;
    settings.origin = url.substr(0, pathAt);
    std::string path = url.substr(pathAt);
    while (!path.empty() && path.back() == '/') {
        path.pop_back();
    }
    if (path.empty()) {
        path = "/v1";
    }
    const bool complete =
        path.size() >= kCompletions.size() &&
        path.compare(path.size() - kCompletions.size(), kCompletions.size(), kCompletions) == 0;
    settings.path = complete ? path : path + std::string(kCompletions);
    return settings;
}

std::string UpstreamAnswerer::description() const {
    return "upstream " + m_settings.origin + m_settings.path;
}

std::string UpstreamAnswerer::requestBody(const Conversation& conversation) const {
    nlohmann::json messages = nlohmann::json::array();
    messages.push_back({{"role", "system"}, {"content", kInstructions}});
    const std::vector<Message>& all = conversation.messages;
    const std::size_t first = all.size() > kMostMessages ? all.size() - kMostMessages : 0;
    for (std::size_t i = first; i < all.size(); ++i) {
        messages.push_back(
            {{"role", all[i].role == Role::User ? "user" : "assistant"}, {"content", all[i].text}});
    }
    const nlohmann::json body{{"model", m_settings.model.empty() ? conversation.model : m_settings.model},
                              {"messages", std::move(messages)},
                              {"stream", true}};
    return body.dump();
}

void UpstreamAnswerer::answer(const Conversation& conversation, AnswerSink& sink) {
    httplib::Client client(m_settings.origin);
    client.set_tcp_nodelay(true);
    client.set_url_encode(false);
    client.set_connection_timeout(std::min(m_settings.timeout, kLongestConnect));
    client.set_read_timeout(m_settings.timeout);
    client.set_write_timeout(m_settings.timeout);
    if (!m_settings.caFile.empty()) {
        client.set_ca_cert_path(m_settings.caFile);
    }

    httplib::Request request;
    request.method = "POST";
    request.path = m_settings.path;
    request.set_header("Content-Type", "application/json");
    request.set_header("Accept", "text/event-stream");
    if (!m_settings.key.empty()) {
        request.set_header("Authorization", "Bearer " + m_settings.key);
    }
    request.body = requestBody(conversation);

    Exchange exchange;
    std::thread server([&] {
        try {
            exchange.end(UpstreamRequest(client, exchange).run(request));
        } catch (const std::exception& error) {
            exchange.end(std::string("与上游模型服务通信失败（") + asUtf8(error.what()) + "）");
        }
    });

    bool any = false;
    bool ended = false;
    bool listening = true;
    while (!ended) {
        const std::string text = exchange.take(ended);
        if (listening) {
            listening = text.empty() ? sink.alive() : sink.write(text);
        }
        any = any || !text.empty();
        if (!listening && !ended) {
            // Repeated until the request ends, because stop() has no effect before the connection is open.
            exchange.abort();
            client.stop();
        }
    }
    server.join();
    if (listening && !exchange.error().empty()) {
        sink.write((any ? "\n\n（" : "抱歉，这次没能得到回答：") + exchange.error() + (any ? "）" : "。"));
    }
}

}  // namespace zentri::service

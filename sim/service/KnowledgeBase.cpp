#include "sim/service/KnowledgeBase.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>

#include "sim/service/EmbeddedFiles.h"
#include "sim/service/SearchTokens.h"
#include "sim/service/Sqlite.h"
#include "sim/service/Text.h"

namespace zentri::service {

namespace {

constexpr std::string_view kTopicSuffix = ".topics";

/// Candidates that the full-text search hands to the ranking by keywords.
constexpr std::int64_t kCandidates = 30;
/// What a whole keyword in the question is worth against the full-text rank, per character of it.
constexpr double kKeywordWeight = 4.0;
/// A Latin word counts as much as this many Han characters.
constexpr std::size_t kCharactersPerWord = 3;
/// Small talk must not win over a drafting topic ("你好，怎么画圆").
constexpr double kSmallTalkFactor = 0.25;

/// How the columns count in the rank. Single characters help when nothing longer does, no more.
constexpr const char* kSearch =
    "SELECT rowid, -bm25(topics, 8.0, 6.0, 4.0, 1.0, 1.5) FROM topics WHERE topics MATCH ?1"
    " ORDER BY 2 DESC LIMIT ?2";

std::string joined(const std::vector<std::string>& parts) {
    std::string text;
    for (const std::string& part : parts)
        text += part + '\n';
    return text;
}

/// The pairs and words of a text as the tokens of one column.
std::string column(std::string_view text) {
    const SearchTokens tokens = tokensOf(text);
    std::string column;
    for (const auto* list : {&tokens.pairs, &tokens.words}) {
        for (const std::string& token : *list)
            column += token + ' ';
    }
    return column;
}

std::string singlesColumn(std::string_view text) {
    std::string column;
    for (const std::string& token : tokensOf(text).singles)
        column += token + ' ';
    return column;
}

/// Nothing a user types can be taken for search syntax: every token is quoted, and none holds a quote.
std::string anyOf(const std::vector<std::string>& tokens) {
    std::string query;
    for (const std::string& token : std::set<std::string>(tokens.begin(), tokens.end()))
        query += (query.empty() ? "\"" : " OR \"") + token + '"';
    return query;
}

std::string searchExpression(const SearchTokens& tokens) {
    std::vector<std::string> exact = tokens.pairs;
    exact.insert(exact.end(), tokens.words.begin(), tokens.words.end());
    std::string query;
    if (!exact.empty())
        query = "{title keywords questions body} : (" + anyOf(exact) + ")";
    if (!tokens.singles.empty())
        query += (query.empty() ? "" : " OR ") + std::string("singles : (") + anyOf(tokens.singles) + ")";
    return query;
}

bool isWordByte(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z');
}

/// Calls `found(at)` for each place where the keyword stands; a Latin keyword only as whole words (a plural s
/// may follow).
template <typename Found>
void forEachPlace(const std::string& content, const std::string& keyword, Found found) {
    for (std::size_t at = content.find(keyword); at != std::string::npos;
         at = content.find(keyword, at + 1)) {
        std::size_t end = at + keyword.size();
        const bool startsInWord = isWordByte(keyword.front()) && at > 0 && isWordByte(content[at - 1]);
        if (isWordByte(keyword.back()) && end < content.size() && content[end] == 's')
            ++end;
        const bool endsInWord =
            isWordByte(keyword.back()) && end < content.size() && isWordByte(content[end]);
        if (!startsInWord && !endsInWord)
            found(at, end);
    }
}

/// How many characters of the content count, and which of its bytes are the first of one that does.
std::size_t informativeLength(const std::string& content) {
    const SearchTokens tokens = tokensOf(content);
    return tokens.singles.size() + tokens.words.size() * kCharactersPerWord;
}

/// The same measure for the bytes that are marked.
std::size_t markedLength(const std::string& content, const std::vector<bool>& marked) {
    std::string text;
    for (std::size_t i = 0; i < content.size(); ++i)
        text += marked[i] ? content[i] : ' ';
    return informativeLength(text);
}

}  // namespace

struct KnowledgeBase::Index {
    SqliteDatabase database{":memory:"};
    std::unique_ptr<SqliteStatement> search;
};

KnowledgeBase::KnowledgeBase(std::vector<Topic> topics)
    : m_topics(std::move(topics)), m_index(std::make_unique<Index>()) {
    if (m_topics.empty())
        throw TopicError("there are no topics");
    m_index->database.execute(
        "CREATE VIRTUAL TABLE topics USING fts5(title, keywords, questions, body, singles, detail=column,"
        " tokenize='porter unicode61')");
    SqliteTransaction transaction(m_index->database);
    {
        SqliteStatement insert = m_index->database.prepare(
            "INSERT INTO topics(rowid, title, keywords, questions, body, singles) VALUES(?1, ?2, ?3, ?4, ?5, "
            "?6)");
        std::set<std::string> titles;
        for (std::size_t i = 0; i < m_topics.size(); ++i) {
            const Topic& topic = m_topics[i];
            if (!titles.insert(topic.title).second)
                throw TopicError("two topics have the title '" + topic.title + "'");
            const std::string keywords = joined(topic.keywords) + joined(topic.commands);
            const std::string body =
                topic.introduction + '\n' + topic.english + '\n' + joined(topic.steps) + joined(topic.tips);
            SqliteStatement::Run(insert)
                .bind(static_cast<std::int64_t>(i))
                .bind(column(topic.title))
                .bind(column(keywords))
                .bind(column(joined(topic.questions)))
                .bind(column(body))
                .bind(singlesColumn(topic.title + '\n' + keywords))
                .step();
            std::vector<std::string> folded;
            for (const auto* list : {&topic.keywords, &topic.commands}) {
                for (const std::string& keyword : *list)
                    folded.push_back(foldForSearch(keyword));
            }
            folded.push_back(foldForSearch(topic.title));
            m_keywords.push_back(std::move(folded));
        }
    }
    transaction.commit();
    m_index->search = std::make_unique<SqliteStatement>(m_index->database.prepare(kSearch));
}

KnowledgeBase::~KnowledgeBase() = default;

std::vector<Topic> KnowledgeBase::builtInTopics() {
    std::vector<Topic> topics;
    for (const EmbeddedFile& file : embeddedFiles()) {
        const std::string name(file.name);
        if (name.size() < kTopicSuffix.size() ||
            name.compare(name.size() - kTopicSuffix.size(), kTopicSuffix.size(), kTopicSuffix) != 0)
            continue;
        std::vector<Topic> part = parseTopics(file.text, name);
        std::move(part.begin(), part.end(), std::back_inserter(topics));
    }
    return topics;
}

std::vector<Topic> KnowledgeBase::topicsIn(const std::string& directory) {
    std::error_code error;
    std::set<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(directory, error)) {
        if (entry.path().extension() == kTopicSuffix)
            files.insert(entry.path());
    }
    if (error)
        throw TopicError("cannot read the knowledge folder '" + directory + "': " + error.message());
    if (files.empty())
        throw TopicError("no *.topics files in the knowledge folder '" + directory + "'");
    std::vector<Topic> topics;
    for (const std::filesystem::path& path : files) {
        std::ifstream stream(path, std::ios::binary);
        const std::string text{std::istreambuf_iterator<char>(stream), {}};
        if (!stream)
            throw TopicError("cannot read '" + path.string() + "'");
        std::vector<Topic> part = parseTopics(text, path.string());
        std::move(part.begin(), part.end(), std::back_inserter(topics));
    }
    return topics;
}

std::vector<Hit> KnowledgeBase::search(std::string_view question, std::size_t count) const {
    std::string content = contentOfQuestion(question);
    if (content.empty())
        content = foldForSearch(question);  // "你好": all of it is what it is about.
    const std::string expression = searchExpression(tokensOf(content));
    std::vector<Hit> hits;
    if (expression.empty())
        return hits;
    {
        const std::lock_guard lock(m_mutex);
        SqliteStatement::Run run(*m_index->search);
        run.bind(expression).bind(kCandidates);
        while (run.step()) {
            const auto topic = static_cast<std::size_t>(run.integer(0));
            hits.push_back({&m_topics[topic], run.real(1), 0});
        }
    }
    const auto length = static_cast<double>(informativeLength(content));
    for (Hit& hit : hits) {
        const auto topic = static_cast<std::size_t>(hit.topic - m_topics.data());
        const double covered = keywordCoverage(topic, content);
        hit.coverage = length > 0 ? covered / length : 0;
        hit.score += covered * kKeywordWeight;
        if (hit.topic->isSmallTalk())
            hit.score *= kSmallTalkFactor;
    }
    std::stable_sort(hits.begin(), hits.end(), [](const Hit& a, const Hit& b) { return a.score > b.score; });
    hits.resize(std::min(hits.size(), count));
    return hits;
}

double KnowledgeBase::keywordCoverage(std::size_t topic, const std::string& content) const {
    std::vector<bool> marked(content.size(), false);
    for (const std::string& keyword : m_keywords[topic]) {
        forEachPlace(content, keyword, [&](std::size_t begin, std::size_t end) {
            std::fill(marked.begin() + static_cast<std::ptrdiff_t>(begin),
                      marked.begin() + static_cast<std::ptrdiff_t>(end), true);
        });
    }
    return static_cast<double>(markedLength(content, marked));
}

}  // namespace zentri::service

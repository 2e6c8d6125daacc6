#include "service/KnowledgeBase.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <iterator>
#include <set>

#include "service/EmbeddedFiles.h"
#include "service/File.h"
#include "service/SearchTokens.h"
#include "service/Sqlite.h"
#include "service/Text.h"

namespace zentri::service {

namespace {

constexpr std::string_view kTopicSuffix = ".topics";

/// Number of candidates that the full-text search passes to the ranking by keywords.
constexpr std::int64_t kCandidates = 30;
/// Weight of each character covered by keywords, relative to the full-text rank.
constexpr double kKeywordWeight = 30.0;
/// Questions are truncated to this many code points, because the cost of the search grows with the length.
constexpr std::size_t kLongestQuestion = 400;
/// A Latin word counts as this many Han characters: in a Chinese question it is nearly always a command name.
constexpr std::size_t kCharactersPerWord = 6;
/// Minimum coverage for a topic to fit; the lower limit applies when the question contains a whole keyword.
constexpr double kFittingCoverage = 0.45;
constexpr double kNamedCoverage = 0.18;
/// Weight of a character that occurs anywhere in the topic's keywords, relative to one inside a whole
/// keyword.
constexpr double kLoneCharacterWeight = 0.4;

/// bm25() takes one weight per column. Single characters only decide when nothing longer matches.
constexpr const char* kSearch =
    "SELECT rowid, -bm25(topics, 8.0, 6.0, 4.0, 1.0, 1.5) FROM topics WHERE topics MATCH ?1"
    " ORDER BY 2 DESC LIMIT ?2";

std::string joined(const std::vector<std::string>& parts) {
    std::string text;
    for (const std::string& part : parts) {
        text += part + '\n';
    }
    return text;
}

/// The pairs and words of a text, separated by spaces, for a column of the full-text table.
std::string column(std::string_view text) {
    const SearchTokens tokens = tokensOf(text);
    std::string column;
    for (const auto* list : {&tokens.pairs, &tokens.words}) {
        for (const std::string& token : *list) {
            column += token + ' ';
        }
    }
    return column;
}

std::string singlesColumn(std::string_view text) {
    std::string column;
    for (const std::string& token : tokensOf(text).singles) {
        column += token + ' ';
    }
    return column;
}

/// An OR expression over the tokens. Each token is quoted and none contains a quote, so that user input is
/// never parsed as FTS5 query syntax.
std::string anyOf(const std::vector<std::string>& tokens) {
    std::string query;
    for (const std::string& token : std::set<std::string>(tokens.begin(), tokens.end())) {
        query += (query.empty() ? "\"" : " OR \"") + token + '"';
    }
    return query;
}

std::string searchExpression(const SearchTokens& tokens) {
    std::vector<std::string> exact = tokens.pairs;
    exact.insert(exact.end(), tokens.words.begin(), tokens.words.end());
    std::string query;
    if (!exact.empty()) {
        query = "{title keywords questions body} : (" + anyOf(exact) + ")";
    }
    if (!tokens.singles.empty()) {
        query += (query.empty() ? "" : " OR ") + std::string("singles : (") + anyOf(tokens.singles) + ")";
    }
    return query;
}

bool isWordByte(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z');
}

/// Calls `found(begin, end)` for each occurrence of the keyword; a Latin keyword matches whole words only,
/// with an optional plural "s".
template <typename Found>
void forEachPlace(const std::string& content, const std::string& keyword, Found found) {
    for (std::size_t at = content.find(keyword); at != std::string::npos;
         at = content.find(keyword, at + 1)) {
        std::size_t end = at + keyword.size();
        const bool startsInWord = isWordByte(keyword.front()) && at > 0 && isWordByte(content[at - 1]);
        if (isWordByte(keyword.back()) && end < content.size() && content[end] == 's') {
            ++end;
        }
        const bool endsInWord =
            isWordByte(keyword.back()) && end < content.size() && isWordByte(content[end]);
        if (!startsInWord && !endsInWord) {
            found(at, end);
        }
    }
}

bool isNumber(const std::string& word) {
    return word.find_first_not_of("0123456789") == std::string::npos;
}

/// Length of the content in Han characters, with words weighted. Numbers do not count, because measurements
/// say nothing about the topic.
std::size_t informativeLength(const std::string& content) {
    const SearchTokens tokens = tokensOf(content);
    const auto words = std::count_if(tokens.words.begin(), tokens.words.end(), std::not_fn(isNumber));
    return tokens.singles.size() + static_cast<std::size_t>(words) * kCharactersPerWord;
}

/// The informative length of the marked bytes only.
std::size_t markedLength(const std::string& content, const std::vector<bool>& marked) {
    std::string text;
    for (std::size_t i = 0; i < content.size(); ++i) {
        text += marked[i] ? content[i] : ' ';
    }
    return informativeLength(text);
}

}  // namespace

struct KnowledgeBase::Index {
    SqliteDatabase database{":memory:"};
    std::unique_ptr<SqliteStatement> search;
};

KnowledgeBase::KnowledgeBase(std::vector<Topic> topics)
    : m_topics(std::move(topics)), m_index(std::make_unique<Index>()) {
    if (m_topics.empty()) {
        throw TopicError("there are no topics");
    }
    m_index->database.execute(
        "CREATE VIRTUAL TABLE topics USING fts5(title, keywords, questions, body, singles,"
        " tokenize='porter unicode61')");
    SqliteTransaction transaction(m_index->database);
    {
        SqliteStatement insert = m_index->database.prepare(
            "INSERT INTO topics(rowid, title, keywords, questions, body, singles) VALUES(?1, ?2, ?3, ?4, ?5, "
            "?6)");
        std::set<std::string> titles;
        std::set<std::string> ownedCommands;
        for (std::size_t i = 0; i < m_topics.size(); ++i) {
            const Topic& topic = m_topics[i];
            if (!titles.insert(topic.title).second) {
                throw TopicError("two topics have the title '" + topic.title + "'");
            }
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
            // The topic's own questions count as keywords too, because they identify it unambiguously.
            std::vector<std::string> folded;
            for (const auto* list : {&topic.keywords, &topic.questions}) {
                for (const std::string& keyword : *list) {
                    const std::string content = contentOfQuestion(keyword);
                    folded.push_back(content.empty() ? foldForSearch(keyword) : content);
                }
            }
            folded.push_back(foldForSearch(topic.title));
            // Several topics may list a command; its bare name leads to the first with it as main command.
            if (!topic.commands.empty() && ownedCommands.insert(topic.commands.front()).second) {
                folded.push_back(foldForSearch(topic.commands.front()));
            }
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
            name.compare(name.size() - kTopicSuffix.size(), kTopicSuffix.size(), kTopicSuffix) != 0) {
            continue;
        }
        std::vector<Topic> part = parseTopics(file.text, name);
        std::move(part.begin(), part.end(), std::back_inserter(topics));
    }
    return topics;
}

std::vector<Topic> KnowledgeBase::topicsIn(const std::string& directory) {
    std::error_code error;
    std::set<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(directory, error)) {
        if (entry.path().extension() == kTopicSuffix) {
            files.insert(entry.path());
        }
    }
    if (error) {
        throw TopicError("cannot read the knowledge directory '" + directory + "': " + error.message());
    }
    if (files.empty()) {
        throw TopicError("no *.topics files in the knowledge directory '" + directory + "'");
    }
    std::vector<Topic> topics;
    for (const std::filesystem::path& path : files) {
        const std::optional<std::string> text = readFile(path.string());
        if (!text) {
            throw TopicError("cannot read '" + path.string() + "'");
        }
        std::vector<Topic> part = parseTopics(*text, path.string());
        std::move(part.begin(), part.end(), std::back_inserter(topics));
    }
    return topics;
}

std::vector<Hit> KnowledgeBase::search(std::string_view question, std::size_t count) const {
    question = firstCodePoints(question, kLongestQuestion);
    std::string content = contentOfQuestion(question);
    if (content.empty()) {
        content = foldForSearch(question);  // Nothing left, as of "你好": search for all of it.
    }
    const std::string expression = searchExpression(tokensOf(content));
    std::vector<Hit> hits;
    if (expression.empty()) {
        return hits;
    }
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
        const double covered = keywordCoverage(topic, content, hit.named);
        hit.coverage = length > 0 ? covered / length : 0;
        hit.score += covered * kKeywordWeight;
    }
    std::stable_sort(hits.begin(), hits.end(), [](const Hit& a, const Hit& b) { return a.score > b.score; });
    // A greeting must not outrank the question that follows it.
    const auto isDrafting = [](const Hit& hit) { return !hit.topic->isSmallTalk(); };
    if (std::any_of(hits.begin(), hits.end(),
                    [&](const Hit& hit) { return isDrafting(hit) && hit.fits(); })) {
        std::stable_partition(hits.begin(), hits.end(), isDrafting);
    }
    hits.resize(std::min(hits.size(), count));
    return hits;
}

bool Hit::fits() const {
    return coverage >= (named ? kNamedCoverage : kFittingCoverage);
}

double KnowledgeBase::keywordCoverage(std::size_t topic, const std::string& content, bool& named) const {
    std::vector<bool> marked(content.size(), false);
    std::string all;
    for (const std::string& keyword : m_keywords[topic]) {
        all += keyword + '\n';
        forEachPlace(content, keyword, [&](std::size_t begin, std::size_t end) {
            named = named || informativeLength(keyword) > 1;
            std::fill(marked.begin() + static_cast<std::ptrdiff_t>(begin),
                      marked.begin() + static_cast<std::ptrdiff_t>(end), true);
        });
    }
    std::size_t lone = 0;
    for (std::size_t at = 0; at < content.size();) {
        const std::size_t start = at;
        if (isCjk(nextCodePoint(content, at)) && !marked[start] &&
            all.find(content.data() + start, 0, at - start) != std::string::npos) {
            ++lone;
        }
    }
    return static_cast<double>(markedLength(content, marked)) +
           kLoneCharacterWeight * static_cast<double>(lone);
}

}  // namespace zentri::service

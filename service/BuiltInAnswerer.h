#pragma once

#include "service/Answerer.h"
#include "service/KnowledgeBase.h"

namespace zentri::service {

/// Pacing of the built-in answers.
struct Pace {
    std::chrono::milliseconds delay{0};  ///< Pause before each piece except the first.
    int piece = 4;                       ///< Code points per piece, at least 1.
};

/// Answers from the knowledge base, offline. The same conversation always gives the same answer.
class BuiltInAnswerer : public Answerer {
public:
    /// The knowledge base must outlive the answerer.
    BuiltInAnswerer(const KnowledgeBase& knowledge, Pace pace) : m_knowledge(knowledge), m_pace(pace) {}

    void answer(const Conversation& conversation, AnswerSink& sink) override;
    std::string description() const override;

    /// The whole answer to the conversation's last question.
    std::string textFor(const std::vector<Message>& messages) const;

private:
    /// The topic of the questions before the last one, owned by the knowledge base; null when unknown.
    const Topic* earlierTopic(const std::vector<Message>& messages) const;

    const KnowledgeBase& m_knowledge;
    const Pace m_pace;
};

}  // namespace zentri::service

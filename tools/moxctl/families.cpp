// SPDX-License-Identifier: Apache-2.0
// moxctl families: what kind of board this is, or another one would be, by the library's own predicates.
#include "family_questions.hpp"
#include "other_board.hpp"
#include "reason.hpp"
#include "verbs.hpp"

namespace moxctl
{

namespace
{

constexpr const char *hard_type_unread = "the hard type could not be read";

Answer asked(const FamilyQuestion &question)
{
    const FamilyAnswer answer = question.ask();
    return answer.failure ? unreadable(*answer.failure, hard_type_unread)
                          : yes_or_no(answer.belongs, question.meaning);
}

} // namespace

Outcome families(const OtherBoard &other)
{
    const Presumed presumed = presume(other);
    const Presumption presumption(presumed);
    Outcome outcome{{hard_type_fact(other), flash_fact(other), family_type_fact(other)}};
    const bool known = !outcome.facts.front().answer.value.is_null();
    for (const FamilyQuestion &question : family_questions())
        outcome.facts.push_back({question.name, question.name, asked(question)});
    if (!known)
        outcome.error = "the board does not tell its hard type; --hard-type asks about any board";
    return outcome;
}

} // namespace moxctl

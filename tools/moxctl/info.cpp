// SPDX-License-Identifier: Apache-2.0
// moxctl info: everything that the library can tell about the board. Getters only.
#include "question.hpp"
#include "verbs.hpp"

namespace moxctl
{

Outcome board_information()
{
    Outcome outcome;
    bool any = false;
    const Board board = Board::ask();
    for (const auto &questions : {identity_questions(), state_questions()}) {
        for (const Question &question : questions) {
            const bool asked = !question.mpu_only || board.counts_as_mpu();
            Answer answer = asked ? question.ask(board) : not_applicable("only on a main processing unit");
            any = any || (asked && question.from_board && (!answer.failure || !answer.value.is_null()));
            outcome.facts.push_back({question.key, question.name, std::move(answer)});
        }
    }
    if (!any)
        outcome.error = "nothing could be read from the board driver";
    return outcome;
}

} // namespace moxctl

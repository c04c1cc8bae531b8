// Remembers what the check for updates would have shown.
#pragma once

#include "update/UpdatePresenter.h"

#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace quillmark::test {

class FakePresenter final : public UpdatePresenter {
public:
    void showAlert(const UpdateAlert& alert) override { alerts.push_back(alert); }
    void askForConsent(const UpdateAlert& question, std::function<void(bool)> answer) override
    {
        questions.push_back(question);
        answerConsent = std::move(answer);
    }
    void showUpdate(const UpdateOffer& offer, UpdateAnswers given) override
    {
        offers.push_back(offer);
        answers = std::move(given);
    }

    std::vector<UpdateAlert> alerts;
    std::vector<UpdateAlert> questions;
    std::vector<UpdateOffer> offers;
    std::function<void(bool)> answerConsent;
    UpdateAnswers answers;
};

} // namespace quillmark::test

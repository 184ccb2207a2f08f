#pragma once

#include "signutils/c_arguments.h"
#include "signutils/c_call.h"
#include "signutils/signutils.h"

#include <memory>

// The handles of the C interface.

struct SignUtilsSession
{
    std::unique_ptr<SignUtils> object; ///< never null
    signutils::GivenTexts texts;
    signutils::CallError error = {};
};

struct SignUtilsSigners
{
    static constexpr int kGrowBy = 128;

    TArray<signerInfo> list{kGrowBy};
    signutils::GivenTexts texts;
};

namespace signutils
{

/// Runs `work` on the session's object and the texts to give out.
template <typename Work>
SignUtilsStatus WithSession(SignUtilsSession* session, const Work& work)
{
    if (session == nullptr)
    {
        return RunCall(ThreadError(), [] { RefuseNull("session", "the handle of a session"); });
    }
    return RunWithTexts(session->error, *session,
                        [&](GivenTexts& texts) { work(*session->object, texts); });
}

/// Runs a change on a copy that takes the object's place when it succeeded: a setting that is
/// refused, or that memory runs out in, leaves no half of it behind.
template <typename Work>
SignUtilsStatus ChangeSession(SignUtilsSession* session, const Work& work)
{
    return WithSession(session,
                       [&](const SignUtils& object, GivenTexts&)
                       {
                           auto changed = std::make_unique<SignUtils>(object);
                           work(*changed);
                           session->object = std::move(changed);
                       });
}

} // namespace signutils

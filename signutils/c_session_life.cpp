#include "signutils/c_results.h"
#include "signutils/c_session.h"

using signutils::Result;
using signutils::RunCall;
using signutils::ThreadError;

namespace
{

// The attachment of an audit event holds the path.
constexpr signutils::FieldLimit kLogFile = {
    259, "Give a shorter path, as events would carry one that leads nowhere."};

std::unique_ptr<SignUtilsSession> Own(std::unique_ptr<SignUtils> object)
{
    auto session = std::make_unique<SignUtilsSession>();
    session->object = std::move(object);
    return session;
}

} // namespace

SignUtilsStatus SIGNUTILS_CALL SignUtilsCreate(SignUtilsTrace* trace, const char* logFile,
                                               SignUtilsSession** session)
{
    const Result<SignUtilsSession*> made("session", session, nullptr);
    return RunCall(ThreadError(),
                   [&]
                   {
                       SignUtilsSession*& place = made.Place();
                       const std::string path =
                           signutils::OptionalNarrowUpTo("logFile", logFile, kLogFile);
                       place = Own(std::make_unique<SignUtils>(trace, path.c_str())).release();
                   });
}

SignUtilsStatus SIGNUTILS_CALL SignUtilsCopy(SignUtilsSession* session, SignUtilsSession** copy)
{
    const Result<SignUtilsSession*> made("copy", copy, nullptr);
    return signutils::WithSession(session,
                                  [&](const SignUtils& object, signutils::GivenTexts&)
                                  {
                                      SignUtilsSession*& place = made.Place();
                                      place = Own(std::make_unique<SignUtils>(object)).release();
                                  });
}

SignUtilsStatus SIGNUTILS_CALL SignUtilsAssign(SignUtilsSession* session,
                                               const SignUtilsSession* source)
{
    return signutils::WithSession(
        session,
        [&](const SignUtils&, signutils::GivenTexts&)
        {
            if (source == nullptr)
            {
                signutils::RefuseNull("source", "the handle of a session");
            }
            // A whole copy first: memory that runs out leaves the session as it was.
            session->object = std::make_unique<SignUtils>(*source->object);
        });
}

void SIGNUTILS_CALL SignUtilsDestroy(SignUtilsSession* session)
{
    const std::unique_ptr<SignUtilsSession> owner(session);
}

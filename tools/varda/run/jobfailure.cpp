// SPDX-License-Identifier: MIT
#include "run/jobfailure.h"

using namespace Qt::StringLiterals;
using Reason = VardaJob::Reason;

ExitCode exitCodeOf(VardaJob::Error error)
{
    switch (error) {
    case VardaJob::NoError:
        return ExitCode::Ok;
    case VardaJob::Rejected:
    case VardaJob::Refused:
    case VardaJob::Damaged:
    case VardaJob::Repeated:
        return ExitCode::JobFailed;
    case VardaJob::Ambiguous:
        return ExitCode::UsageError;
    case VardaJob::NotFound:
        return ExitCode::NotFound;
    case VardaJob::InUse:
    case VardaJob::NotConnected:
    case VardaJob::LinkLost:
        return ExitCode::LinkFailed;
    case VardaJob::TimedOut:
        return ExitCode::TimedOut;
    case VardaJob::NoBluetooth:
        return ExitCode::NoBluetooth;
    case VardaJob::NotStored:
        return ExitCode::StoreFailed;
    case VardaJob::Cancelled: // only by an interruption, which has a status of its own
        break;
    }
    return ExitCode::JobFailed;
}

Failure failureOf(const VardaJob &job)
{
    Failure failure{exitCodeOf(job.error()), job.errorText(), job.remedy()};
    switch (job.reason()) {
    case Reason::WriteFailed: // the request was at fault rather than the link
        failure.code = ExitCode::JobFailed;
        break;
    case Reason::Silent:
        failure.advice += u" \"varda scan --all\" lists what is in range."_s;
        break;
    case Reason::SameVersion:
        failure.advice = u"Use --force to upload it anyway."_s;
        break;
    case Reason::OtherLinkMode:
        failure.advice = u"Try without --mode."_s;
        break;
    default:
        break;
    }
    return failure;
}

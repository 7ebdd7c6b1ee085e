#include "delivery/read_outcome.h"

#include "host_sdk/premiere_constants.h"

int32_t HostResultOf(ReadOutcome outcome) {
  switch (outcome) {
    case ReadOutcome::kDelivered:
      return imNoErr;
    case ReadOutcome::kNoContext:
    case ReadOutcome::kNoSource:
      return imNoContent;
    case ReadOutcome::kFailed:
      break;
  }
  return malUnknownError;
}

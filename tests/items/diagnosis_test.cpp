// What an item says about its table and its Core when it cannot write.
#include "orif/datatable/Table.h"
#include "orif/items/PosRegXyzwpr.h"
#include "tests/support/Transcript.h"

namespace orif::test {
namespace {

// A Core as no client can make one, for a table and an item that are out of the ordinary.
struct StandIn : TableOwner {
  const CoreContext& Context() const noexcept override { return context; }
  std::int32_t ConnectState() const noexcept override { return state; }
  void ReleaseDataTable2() noexcept override {}

  CoreContext context;
  std::int32_t state = 1;
};

using Diagnosis = TableTranscript;

TEST_F(Diagnosis, HasAWordForEveryCase) {
  const auto item = MakeShared<PosRegXyzwpr>();
  RUN(item->Update());
  StandIn owner;
  const auto loose = MakeShared<orif::Table>();
  loose->OwnerCore(&owner);
  item->SetDataTable(loose);
  owner.context.debugLog = true;
  for (const std::int32_t state : {0, 1, 2, 7}) {
    owner.state = state;
    RUN(item->Update());
  }
  loose->OwnerCore(nullptr);
  RUN(item->Update());
}

}  // namespace
}  // namespace orif::test

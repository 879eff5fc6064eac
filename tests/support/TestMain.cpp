// The main() of every test program: runs all tests and fails any test that
// ends with more (or fewer) shared objects alive than it started with.

#include <gtest/gtest.h>

#include "core/ASharedObject.h"

namespace {

class LeakCheckListener : public ::testing::EmptyTestEventListener {
 public:
  void OnTestStart(const ::testing::TestInfo&) override {
    start_count_ = ppdforge::SharedObjectLiveCount().load();
  }

  // End events reach the listeners in reverse order, so this one runs before
  // the result printer, after the fixture is destroyed and while the test is
  // still current: the failure is charged to the test that leaked.
  void OnTestEnd(const ::testing::TestInfo&) override {
    const long difference = ppdforge::SharedObjectLiveCount().load() - start_count_;
    if (difference != 0) {
      ADD_FAILURE() << "shared objects alive after the test differ by " << difference
                    << " from the start (" << (difference > 0 ? "leak" : "over-release") << ")";
    }
  }

 private:
  long start_count_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  ::testing::UnitTest::GetInstance()->listeners().Append(new LeakCheckListener);
  return RUN_ALL_TESTS();
}

// SPDX-License-Identifier: MIT
#pragma once

#include <set>
#include <string>
#include <utility>

#include "gis/errors.h"

namespace velmora::test {

// Stands at calls of one kind: counts them, and lets some of them fail.
class FailurePoint {
  public:
    // `doing` begins the text of the failure: "Cannot save ".
    explicit FailurePoint(std::string doing) : doing_(std::move(doing)) {}

    // Lets the n-th call from now on fail too.
    void failAt(int n) { failing_.insert(calls_ + n); }
    int calls() const { return calls_; }
    const std::string& doing() const { return doing_; }

    // A call for the subject. Throws PlatformError when it is one to fail.
    void pass(const std::string& subject) {
        if (failing_.contains(++calls_))
            throw PlatformError(doing_ + subject + ": the test lets it fail");
    }

  private:
    std::string doing_;
    int calls_ = 0;
    std::set<int> failing_;
};

}  // namespace velmora::test

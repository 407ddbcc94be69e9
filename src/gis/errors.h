// SPDX-License-Identifier: MIT
// The one family of failures that platform operations report. what() is the error description that
// a step shows to the user behind its fixed prefix: it names the file, field, station or cell. The
// same stands beside it in fields, for programs.
#pragma once

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>

namespace velmora {

// Where something failed, as far as that is known; the rest is empty, numbers 0. All are counted
// from 1.
struct ErrorPlace {
    std::string file = {};     // the path of a file, folder or dataset
    std::string field = {};    // of a table or of the settings
    std::size_t record = 0;    // of a table
    std::string station = {};  // a weather station's name
    int month = 0;
    std::size_t column = 0;  // of a cell of a grid
    std::size_t row = 0;

    bool operator==(const ErrorPlace&) const = default;
    bool empty() const { return *this == ErrorPlace(); }
};

// What all failures that can tell their place have in common.
class PlacedError {
  public:
    ErrorPlace place() const { return place_ ? *place_ : ErrorPlace(); }

  protected:
    PlacedError() = default;
    explicit PlacedError(ErrorPlace place)
        : place_(std::make_shared<const ErrorPlace>(std::move(place))) {}

  private:
    std::shared_ptr<const ErrorPlace> place_;  // shared, as copies of exceptions must not throw
};

class PlatformError : public std::runtime_error, public PlacedError {
  public:
    using std::runtime_error::runtime_error;
    PlatformError(const std::string& text, ErrorPlace place)
        : std::runtime_error(text), PlacedError(std::move(place)) {}
    PlatformError(const PlatformError&) = default;
    PlatformError& operator=(const PlatformError&) = default;
    ~PlatformError() override;
};

// A failure in a field of a table's record: "In FILE, record 3, field P_Jan: " and what it is.
PlatformError errorInField(const ErrorPlace& place, const std::string& what);

// The place of the failure that a handler above is about to treat; an empty one outside of handlers
// and for failures that have none.
ErrorPlace placeOfHandled();

}  // namespace velmora

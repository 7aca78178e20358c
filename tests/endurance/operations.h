#pragma once

// What is done again and again: each operation does one and returns whether it ended as it had to.

#include <cstdint>
#include <memory>

#include <QString>

namespace endurance
{

class Operation
{
public:
    Operation() = default;
    virtual ~Operation() = default;
    Operation(const Operation &) = delete;
    Operation &operator=(const Operation &) = delete;

    /** Does it for the `number`th time. Empty, or what was wrong. */
    virtual QString run(std::uint64_t number) = 0;

    /** How many runs ended with a failure that may be. */
    std::uint64_t failures() const { return m_failures; }

protected:
    void countFailure() { ++m_failures; }

private:
    std::uint64_t m_failures = 0;
};

/**
 * `readIDCard` of every built-in card in turn, on the simulator; every eighth with one of the
 * faults that a counter meets. Null and a message when the simulator cannot be loaded.
 */
std::unique_ptr<Operation> readingCards(QString *problem);

/**
 * Opening, fetching and closing the reader on USB. Every hundredth time it prints "unplug", waits
 * for a line on standard input, reads in vain, prints "plug" and waits once more.
 */
std::unique_ptr<Operation> readingOverUsb();

/** Text, photo and kind of a raw record of every built-in card in turn. */
std::unique_ptr<Operation> decodingRecords(QString *problem);

} // namespace endurance

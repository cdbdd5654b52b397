#pragma once

// The spectra behind the spectrogram view, newest last: a fixed ring in one flat float buffer
// that is allocated once, so filling it ten times a second never touches the allocator.
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "common/Date.h"

namespace ostrel {

class SpectrogramHistory {
public:
    static constexpr std::int64_t defaultRows = 240; // the fine 1/24-octave grid
    static constexpr std::int64_t defaultCapacity = 610; // about a minute at ten spectra a second
    // The date of a column that was never written.
    static constexpr Date distantPast = ostrel::distantPast;

    // Rows and capacity below 1 become 1.
    explicit SpectrogramHistory(
        std::int64_t rows = defaultRows, std::int64_t capacity = defaultCapacity);

    std::int64_t rows() const noexcept { return m_rows; }
    std::int64_t capacity() const noexcept { return m_capacity; }
    std::int64_t count() const noexcept { return m_count; }
    std::int64_t head() const noexcept { return m_head; }
    // Column-major: stored column c, row r is at c * rows + r.
    const std::vector<float>& values() const noexcept { return m_values; }
    const std::vector<Date>& dates() const noexcept { return m_dates; }

    std::optional<Date> newestDate() const noexcept;
    // A column of any length other than rows is dropped: it belongs to another band layout.
    void append(std::span<const double> column, Date date) noexcept;
    // Logical columns count from 0, the oldest held, to count - 1.
    float level(std::int64_t column, std::int64_t row) const noexcept;
    Date date(std::int64_t column) const noexcept;
    std::optional<float> maximum() const noexcept;
    void removeAll() noexcept;
    // Keeps the newest columns that fit. Capacities below 1 become 1.
    void resize(std::int64_t requestedCapacity);
    // The stored column of a logical one.
    std::int64_t physical(std::int64_t column) const noexcept;
    std::size_t memoryBytes() const noexcept;

private:
    std::int64_t m_rows;
    std::int64_t m_capacity;
    std::vector<float> m_values;
    std::vector<Date> m_dates;
    std::int64_t m_head = 0;
    std::int64_t m_count = 0;
};

} // namespace ostrel

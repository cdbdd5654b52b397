#include "model/SpectrogramHistory.h"

#include <algorithm>

namespace ostrel {

SpectrogramHistory::SpectrogramHistory(std::int64_t rows, std::int64_t capacity)
    : m_rows(std::max<std::int64_t>(rows, 1)),
      m_capacity(std::max<std::int64_t>(capacity, 1)),
      m_values(static_cast<std::size_t>(m_rows * m_capacity), 0.0f),
      m_dates(static_cast<std::size_t>(m_capacity), distantPast)
{
}

std::optional<Date> SpectrogramHistory::newestDate() const noexcept
{
    if (m_count == 0) return std::nullopt;
    return date(m_count - 1);
}

void SpectrogramHistory::append(std::span<const double> column, Date date) noexcept
{
    if (static_cast<std::int64_t>(column.size()) != m_rows) return;
    std::transform(column.begin(), column.end(), m_values.begin() + m_head * m_rows,
        [](double level) { return static_cast<float>(level); });
    m_dates[m_head] = date;
    m_head = (m_head + 1) % m_capacity;
    m_count = std::min(m_capacity, m_count + 1);
}

float SpectrogramHistory::level(std::int64_t column, std::int64_t row) const noexcept
{
    return m_values[physical(column) * m_rows + row];
}

Date SpectrogramHistory::date(std::int64_t column) const noexcept
{
    return m_dates[physical(column)];
}

std::optional<float> SpectrogramHistory::maximum() const noexcept
{
    if (m_count < 1) return std::nullopt;
    // Only held columns count: after removeAll the buffer still holds stale levels.
    float largest = level(0, 0);
    for (std::int64_t column = 0; column < m_count; ++column) {
        const auto first = m_values.begin() + physical(column) * m_rows;
        largest = std::max(largest, *std::max_element(first, first + m_rows));
    }
    return largest;
}

void SpectrogramHistory::removeAll() noexcept
{
    m_head = 0;
    m_count = 0;
}

void SpectrogramHistory::resize(std::int64_t requestedCapacity)
{
    const std::int64_t capacity = std::max<std::int64_t>(requestedCapacity, 1);
    if (capacity == m_capacity) return;

    std::vector<float> values(static_cast<std::size_t>(m_rows * capacity), 0.0f);
    std::vector<Date> dates(static_cast<std::size_t>(capacity), distantPast);
    const std::int64_t copied = std::min(m_count, capacity);
    const std::int64_t firstKept = m_count - copied;
    for (std::int64_t column = 0; column < copied; ++column) {
        const auto source = m_values.begin() + physical(firstKept + column) * m_rows;
        std::copy(source, source + m_rows, values.begin() + column * m_rows);
        dates[column] = date(firstKept + column);
    }

    m_values = std::move(values);
    m_dates = std::move(dates);
    m_capacity = capacity;
    m_head = copied % capacity;
    m_count = copied;
}

std::int64_t SpectrogramHistory::physical(std::int64_t column) const noexcept
{
    return (m_head - m_count + column + m_capacity) % m_capacity;
}

std::size_t SpectrogramHistory::memoryBytes() const noexcept
{
    return m_values.capacity() * sizeof(float) + m_dates.capacity() * sizeof(Date);
}

} // namespace ostrel

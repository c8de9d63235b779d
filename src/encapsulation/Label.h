#ifndef ENCAPSULATION_LABEL_H
#define ENCAPSULATION_LABEL_H

#include <cstddef>
#include <vector>

/// How an egress object is told that it has no label of its own.
constexpr unsigned int kNoLabel = 0xFFFFFFFF;

constexpr unsigned int kExplicitNull = 0;
constexpr unsigned int kImplicitNull = 3;

/// The label at `index`, `missing` beyond the vector's end.
inline unsigned int LabelAt(const std::vector<unsigned int>& labels, std::size_t index, unsigned int missing) {
  return index < labels.size() ? labels[index] : missing;
}

#endif

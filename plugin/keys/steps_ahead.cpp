#include "keys/steps_ahead.h"

void StepsAhead::start(NodeLink node, const BucketWalk& walk) {
  walk_ = walk;
  at_ = first;
  way_[first] = node;
  way_[first + 1] = no_node;
}

void* StepsAhead::go_on() {
  count_ = walk_.gather(way_ + first, capacity);
  if (count_ == 0) return nullptr;
  way_[first + count_] = no_node;
  at_ = first;
  return node_at(way_[first]);
}

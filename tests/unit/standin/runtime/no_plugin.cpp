// A library that is no plugin.
extern "C" __attribute__((visibility("default"))) int not_an_entry() {
  return 1;
}

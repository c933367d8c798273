// Compiled once with the headers that all tests share, so that they need not be parsed again.
int main() {
  return 0;
}

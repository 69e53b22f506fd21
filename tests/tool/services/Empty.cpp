// A shared object without an entry point.
extern "C" __attribute__((visibility("default"))) int somethingElse()
{
  return 0;
}

// Two libraries: a plug-in that needs another one, and that one, which no plug-in should get from
// the current folder.

#if defined(NEEDY)
__declspec(dllimport) void* Planted();
extern "C" __declspec(dllexport) void* NuvPluginLibGet() {
  return Planted();
}
#else
__declspec(dllexport) void* Planted() {
  return nullptr;
}
#endif

#pragma once

class PWObject;

// The module's one export. The engine asks by name for an object that it then owns; null for a name
// that the module doesn't know. The one name is "Object_ImportManager", which gives a new
// `PWImportManager` over a new source manager; the engine deletes both, each by itself.
extern "C" __attribute__((visibility("default"))) PWObject* createObject(const char* name);

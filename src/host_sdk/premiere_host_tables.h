// The standard parameters that come with every selector, and the host function tables they lead
// to: memory functions, utility functions and the basic suite that hands out every other suite.
//
// Path to a suite: stdParms->piSuites->utilFuncs->getSPBasicSuite()->AcquireSuite(...).
#pragma once

#include <cstddef>
#include <cstdint>

#include "host_sdk/premiere_types.h"

extern "C" {

// Slots 0..6. Not packed in the host either; it holds pointers only.
struct SPBasicSuite {
  SPErr (*AcquireSuite)(const char* name, int32_t version, const void** suite);
  SPErr (*ReleaseSuite)(const char* name, int32_t version);
  OpaqueHostFunction IsEqual;  // answers a boolean of unstated width; not used
  SPErr (*AllocateBlock)(size_t size, void** block);
  SPErr (*FreeBlock)(void* block);
  SPErr (*ReallocateBlock)(void* block, size_t newSize, void** newBlock);
  SPErr (*Undefined)();
};

#pragma pack(push, 1)

// The host's allocator. Private data must come from here, since the host keeps the handle and
// hands it back with later selectors.
struct PlugMemoryFuncs {
  PrMemoryPtr (*newPtr)(uint32_t size);
  void (*setPtrSize)(PrMemoryPtr* ptr, uint32_t newSize);
  int32_t (*getPtrSize)(PrMemoryPtr ptr);
  void (*disposePtr)(PrMemoryPtr ptr);
  PrMemoryHandle (*newHandle)(uint32_t size);
  int16_t (*setHandleSize)(PrMemoryHandle h, uint32_t newSize);
  int32_t (*getHandleSize)(PrMemoryHandle h);
  void (*disposeHandle)(PrMemoryHandle h);
  PrMemoryPtr (*newPtrClear)(uint32_t size);
  PrMemoryHandle (*newHandleClear)(uint32_t size);
  void (*lockHandle)(PrMemoryHandle h);  // deprecated by the host but still present
  void (*unlockHandle)(PrMemoryHandle h);
};

struct PlugUtilFuncs {
  intptr_t (*getSettings)(uint32_t settingsSelector);
  void (*getSerialNumber)(char* buffer);  // at least 40 characters
  int32_t (*getFileTimebase)(prFileSpec* file, int32_t audioOnly, prTimebaseRec* timebase);
  int32_t (*getFileVideo)(prFileSpec* file, int32_t frame, PPixHand frameOut, prRect* bounds,
                          int32_t flags);
  int32_t (*getFileAudioSecond)(prFileSpec* file, int32_t num, char* buffer, int16_t flags,
                                int32_t audrate, int16_t speed);
  void* (*getPlugInResFile)();  // an HINSTANCE on Windows
  int32_t (*getFileVideoBounds)(prFileSpec* file, prRect* bounds);
  SPBasicSuite* (*getSPBasicSuite)();
  int32_t (*getFileExtString)(uint32_t fileTypes, char* buffer, uint32_t bufferSize);
};

// Not used; the two words once held file callbacks.
struct imCallbackFuncs {
  void* classFuncs;
  int32_t unused1;
  int32_t unused2;
};

struct piSuites {
  int32_t piInterfaceVer;
  PlugMemoryFuncs* memFuncs;
  void* windFuncs;
  void* ppixFuncs;
  PlugUtilFuncs* utilFuncs;
  void* timelineFuncs;
};

struct imStdParms {
  int32_t imInterfaceVer;  // IMPORTMOD_VERSION_n
  imCallbackFuncs* funcs;
  ::piSuites* piSuites;  // qualified: the member reuses the type's name
};

#pragma pack(pop)

}  // extern "C"

static_assert(sizeof(SPBasicSuite) == 7 * 8, "SPBasicSuite has 7 slots");
static_assert(offsetof(SPBasicSuite, AcquireSuite) == 0, "SPBasicSuite slot 0");
static_assert(offsetof(SPBasicSuite, ReleaseSuite) == 8, "SPBasicSuite slot 1");

static_assert(sizeof(PlugMemoryFuncs) == 12 * 8, "PlugMemoryFuncs has 12 slots");
static_assert(offsetof(PlugMemoryFuncs, newHandle) == 4 * 8, "PlugMemoryFuncs slot 4");
static_assert(offsetof(PlugMemoryFuncs, disposeHandle) == 7 * 8, "PlugMemoryFuncs slot 7");
static_assert(offsetof(PlugMemoryFuncs, lockHandle) == 10 * 8, "PlugMemoryFuncs slot 10");
static_assert(offsetof(PlugMemoryFuncs, unlockHandle) == 11 * 8, "PlugMemoryFuncs slot 11");

static_assert(sizeof(PlugUtilFuncs) == 9 * 8, "PlugUtilFuncs has 9 slots");
static_assert(offsetof(PlugUtilFuncs, getSettings) == 0, "PlugUtilFuncs slot 0");
static_assert(offsetof(PlugUtilFuncs, getSerialNumber) == 8, "PlugUtilFuncs slot 1");
static_assert(offsetof(PlugUtilFuncs, getFileTimebase) == 16, "PlugUtilFuncs slot 2");
static_assert(offsetof(PlugUtilFuncs, getFileVideo) == 24, "PlugUtilFuncs slot 3");
static_assert(offsetof(PlugUtilFuncs, getFileAudioSecond) == 32, "PlugUtilFuncs slot 4");
static_assert(offsetof(PlugUtilFuncs, getPlugInResFile) == 40, "PlugUtilFuncs slot 5");
static_assert(offsetof(PlugUtilFuncs, getFileVideoBounds) == 48, "PlugUtilFuncs slot 6");
static_assert(offsetof(PlugUtilFuncs, getSPBasicSuite) == 56, "PlugUtilFuncs slot 7");
static_assert(offsetof(PlugUtilFuncs, getFileExtString) == 64, "PlugUtilFuncs slot 8");

static_assert(sizeof(imCallbackFuncs) == 16, "imCallbackFuncs is 16 bytes");
static_assert(offsetof(imCallbackFuncs, classFuncs) == 0, "imCallbackFuncs layout");
static_assert(offsetof(imCallbackFuncs, unused1) == 8, "imCallbackFuncs layout");
static_assert(offsetof(imCallbackFuncs, unused2) == 12, "imCallbackFuncs layout");

static_assert(sizeof(piSuites) == 44, "piSuites is 44 bytes");
static_assert(offsetof(piSuites, piInterfaceVer) == 0, "piSuites layout");
static_assert(offsetof(piSuites, memFuncs) == 4, "piSuites layout");
static_assert(offsetof(piSuites, windFuncs) == 12, "piSuites layout");
static_assert(offsetof(piSuites, ppixFuncs) == 20, "piSuites layout");
static_assert(offsetof(piSuites, utilFuncs) == 28, "piSuites layout");
static_assert(offsetof(piSuites, timelineFuncs) == 36, "piSuites layout");

static_assert(sizeof(imStdParms) == 20, "imStdParms is 20 bytes");
static_assert(offsetof(imStdParms, imInterfaceVer) == 0, "imStdParms layout");
static_assert(offsetof(imStdParms, funcs) == 4, "imStdParms layout");
static_assert(offsetof(imStdParms, piSuites) == 12, "imStdParms layout");

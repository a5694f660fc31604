/// Export and import marks of the product's shared libraries. Each library is built with hidden visibility and marks
/// what it offers with its own macro of this header; CMake defines <target>_EXPORTS while that library is built.
#ifndef VLHOSTKIT_EXPORT_H
#define VLHOSTKIT_EXPORT_H

#ifdef _WIN32
#define VLHOSTKIT_SYMBOL_EXPORT __declspec(dllexport)
#define VLHOSTKIT_SYMBOL_IMPORT __declspec(dllimport)
#else
#define VLHOSTKIT_SYMBOL_EXPORT __attribute__((visibility("default")))
#define VLHOSTKIT_SYMBOL_IMPORT __attribute__((visibility("default")))
#endif

#ifdef vlhostkitu_EXPORTS
#define VLHOSTKIT_API VLHOSTKIT_SYMBOL_EXPORT
#else
#define VLHOSTKIT_API VLHOSTKIT_SYMBOL_IMPORT
#endif

#ifdef txlogu_EXPORTS
#define TXLOGU_API VLHOSTKIT_SYMBOL_EXPORT
#else
#define TXLOGU_API VLHOSTKIT_SYMBOL_IMPORT
#endif

#ifdef vlafx_EXPORTS
#define VLAFX_API VLHOSTKIT_SYMBOL_EXPORT
#else
#define VLAFX_API VLHOSTKIT_SYMBOL_IMPORT
#endif

#ifdef tx_cext_EXPORTS
#define TX_CEXT_API VLHOSTKIT_SYMBOL_EXPORT
#else
#define TX_CEXT_API VLHOSTKIT_SYMBOL_IMPORT
#endif

#ifdef vlplatform_EXPORTS
#define VLPLATFORM_API VLHOSTKIT_SYMBOL_EXPORT
#else
#define VLPLATFORM_API VLHOSTKIT_SYMBOL_IMPORT
#endif

#endif

/// Message maps: which member of a class handles which message.
#ifndef VLAFX_CMDTARGET_H
#define VLAFX_CMDTARGET_H

#include <vlafx/object.h>

class CCmdTarget;

/// Runs a handler of the object; commands and notifications give no result.
using AFX_PMSG = LRESULT (*)(CCmdTarget* target, WPARAM first, LPARAM second);

/// Who handles what.
struct AFX_MSGMAP_ENTRY {
  UINT nMessage;  ///< WM_COMMAND, or another message
  UINT nCode;     ///< the notification's code, for WM_COMMAND
  UINT nID;       ///< the first id of commands and controls, for WM_COMMAND
  UINT nLastID;   ///< the last one, often the same
  AFX_PMSG pfn;   ///< null ends a map
};

/// A class's own entries, and where the search goes on.
struct AFX_MSGMAP {
  const AFX_MSGMAP* (*pfnGetBaseMap)();  ///< null at the root
  const AFX_MSGMAP_ENTRY* lpEntries;     ///< with an end entry
};

/// Gives a class a message map: DECLARE_MESSAGE_MAP() stands in the class; in one source file BEGIN_MESSAGE_MAP(CLogOn,
/// CDialog), then entries as ON_BN_CLICKED(IDC_FORGET, OnForget) without commas, then END_MESSAGE_MAP().
#define DECLARE_MESSAGE_MAP()                   \
 protected:                                     \
  static const AFX_MSGMAP* GetThisMessageMap(); \
  const AFX_MSGMAP* GetMessageMap() const override;

/// Begins the map of a class, behind which its base's map is searched.
#define BEGIN_MESSAGE_MAP(class_name, base_name)        \
  const AFX_MSGMAP* class_name::GetMessageMap() const { \
    return GetThisMessageMap();                         \
  }                                                     \
  const AFX_MSGMAP* class_name::GetThisMessageMap() {   \
    using ThisClass [[maybe_unused]] = class_name;      \
    using BaseClass = base_name;                        \
    static const AFX_MSGMAP_ENTRY entries[] = {
/// Ends the map.
#define END_MESSAGE_MAP()                                                 \
  {0, 0, 0, 0, nullptr},                                                  \
  }                                                                       \
  ;                                                                       \
  static const AFX_MSGMAP map = {&BaseClass::GetThisMessageMap, entries}; \
  return &map;                                                            \
  }

/// The commands of menus and of controls without more to say, `void OnFoo()`.
#define ON_COMMAND(id, member) ON_CONTROL(0, id, member)
/// The notification `code` of the control `id`, `void OnFoo()`.
#define ON_CONTROL(code, id, member)                                                                                   \
  {WM_COMMAND, code, static_cast<UINT>(id), static_cast<UINT>(id), [](CCmdTarget* target, WPARAM, LPARAM) -> LRESULT { \
     (static_cast<ThisClass*>(target)->member)();                                                                      \
     return 0;                                                                                                         \
   }},
/// A click on a button.
#define ON_BN_CLICKED(id, member) ON_CONTROL(BN_CLICKED, id, member)
/// A change that the user made in an edit control.
#define ON_EN_CHANGE(id, member) ON_CONTROL(EN_CHANGE, id, member)
/// Any other message, `LRESULT OnFoo(WPARAM, LPARAM)`; but WM_INITDIALOG and WM_NCDESTROY, which have members of their
/// own (CDialog::OnInitDialog, CWnd::PostNcDestroy).
#define ON_MESSAGE(message, member)                                        \
  {message, 0, 0, 0, [](CCmdTarget* target, WPARAM first, LPARAM second) { \
     return (static_cast<ThisClass*>(target)->member)(first, second);      \
   }},

/// The base of what handles commands.
class VLAFX_API CCmdTarget : public CObject {
  DECLARE_DYNAMIC(CCmdTarget)

 public:
  ~CCmdTarget() override;
  /// Runs the handler of the command or notification; FALSE if no map has one.
  virtual BOOL OnCmdMsg(UINT id, int code);

 protected:
  CCmdTarget() = default;
  /// The map of this class.
  static const AFX_MSGMAP* GetThisMessageMap();
  /// The map of the object's class.
  virtual const AFX_MSGMAP* GetMessageMap() const;
  /// Searches the maps from the object's class to the root; null if there is no entry.
  const AFX_MSGMAP_ENTRY* findHandler(UINT message, UINT code, UINT id) const;
};

#endif

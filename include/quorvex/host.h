/* Host hooks: how the engine asks its host program a question.
 *
 * The engine shows three things to a person: Yes/No message boxes, the Open
 * Profile dialog and the "Closing Master Profile..." notice. A host program
 * installs callbacks for them with QuorvexSetHost. Without a host, on an
 * interactive terminal the question is asked on the terminal; otherwise the
 * text goes to standard error and the answer is No for a question, Yes for
 * the error box's "see the next box", and cancel for the dialog. */
#ifndef QUORVEX_HOST_H_
#define QUORVEX_HOST_H_

#include "quorvex/base.h"
#include "quorvex/list.h"

QV_EXTERN_C_BEGIN

/* What a message box is for, so that a host without a person can answer. */
typedef enum QuorvexBoxKind {
  QV_BOX_ERROR = 0,   /* an error report: "see a box for the next error?" */
  QV_BOX_QUESTION = 1 /* a question the engine acts on (check out, create file) */
} QuorvexBoxKind;

/* The radio buttons of the "Profile Type" group. */
typedef enum QuorvexProfileKind {
  QV_KIND_NONE = 0, /* no button checked */
  QV_KIND_MASTER = 1,
  QV_KIND_ORVIK = 2,
  QV_KIND_INSTALLATION = 3 /* shown disabled */
} QuorvexProfileKind;

/* The Open Profile dialog's controls. The engine fills every field before the
 * call from the path, project, message and flags; the host edits them and
 * returns 1 for OK, 0 for Exit or cancel. On OK the engine turns the controls
 * back into flags. */
typedef struct QuorvexOpenProfileRequest {
  const char* message;        /* static text at the top */
  char path[QV_PATH_SIZE];    /* "&Profile Path:" */
  char project[QV_PATH_SIZE]; /* "Version Control Project Name" */
  uint32_t flags;             /* the flags word the dialog started from */
  int kind;                   /* QuorvexProfileKind of the checked radio button */
  int versionControl;         /* check box "On" */
  int readOnly;               /* "Open Read Only" */
  int readActiveOnly;         /* "Read Active Objects Only" */
  int silent;                 /* "Silent" */
  RecordList* projects;       /* the drop-down list; filled when version control is on */
  int projectsFilled;         /* 1 once the list was filled during this showing */
} QuorvexOpenProfileRequest;

/* Fills request->projects from the version-control client, once per
 * showing: a host calls it when the person checks "On". */
QV_API int QuorvexFillProjectList(QuorvexOpenProfileRequest* request);

typedef struct QuorvexHost {
  void* context;
  /* Returns 1 for Yes, 0 for No. */
  int (*messageBox)(void* context, const char* text, const char* caption, int boxKind);
  /* Returns 1 for OK, 0 for cancel. */
  int (*openProfileDialog)(void* context, QuorvexOpenProfileRequest* request);
  /* Called with done = 0 when the closing notice appears and 1 when it goes. */
  void (*closingNotice)(void* context, const char* title, const char* text, int done);
} QuorvexHost;

/* Installs the host's callbacks (copied); NULL, or a NULL member, restores
 * the default behaviour for that callback. */
QV_API void QuorvexSetHost(const QuorvexHost* host);

QV_EXTERN_C_END

#endif /* QUORVEX_HOST_H_ */

/* QUORVEX: the engine of an installation-authoring system.
 *
 * Include this header for the whole C API. A host opens a profile
 * (profile.h), reads records as lists (list.h and the record kinds), writes
 * changes back, and closes the profile. */
#ifndef QUORVEX_QUORVEX_H_
#define QUORVEX_QUORVEX_H_

#include "quorvex/ad.h"
#include "quorvex/base.h"
#include "quorvex/catalogue.h"
#include "quorvex/devkeys.h"
#include "quorvex/filegroups.h"
#include "quorvex/host.h"
#include "quorvex/installs.h"
#include "quorvex/languages.h"
#include "quorvex/list.h"
#include "quorvex/locations.h"
#include "quorvex/modulecontents.h"
#include "quorvex/modulegroups.h"
#include "quorvex/modules.h"
#include "quorvex/ordinals.h"
#include "quorvex/products.h"
#include "quorvex/profile.h"
#include "quorvex/records.h"
#include "quorvex/report.h"
#include "quorvex/resources.h"
#include "quorvex/settings.h"
#include "quorvex/symbols.h"
#include "quorvex/text.h"
#include "quorvex/vcs.h"
#include "quorvex/writer.h"

#endif /* QUORVEX_QUORVEX_H_ */

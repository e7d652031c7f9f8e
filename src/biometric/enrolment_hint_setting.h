// Whether the user wants the enrolment explained: kept in the configuration store.
#pragma once

namespace zeldlg {

/// Looked up at every call; true unless the store says 0.
bool IsEnrolmentHintWanted();

/// Written at once. A store that cannot be written must not stop an enrolment: the wish is dropped.
void StoreEnrolmentHintWanted(bool wanted);

}  // namespace zeldlg

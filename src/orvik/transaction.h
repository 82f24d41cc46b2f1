// One engine operation on an Orvik profile as one SQLite transaction.
//
// A complete-list put, a delete with the deletes of its references, a
// birth or a rename changes many rows; the database must show all of them
// or none, also after the process is killed half-way. Each such operation
// opens an OrvikTransaction; nested ones (a delete that deletes
// references through other kinds' operations) join the outermost, which
// alone commits or rolls back. Without a current database it does nothing.
#ifndef QUORVEX_ORVIK_TRANSACTION_H_
#define QUORVEX_ORVIK_TRANSACTION_H_

namespace qv {

class OrvikTransaction {
 public:
  OrvikTransaction();
  // Rolls back what Finish did not commit.
  ~OrvikTransaction();
  OrvikTransaction(const OrvikTransaction&) = delete;
  OrvikTransaction& operator=(const OrvikTransaction&) = delete;

  // The operation's result: 1 commits, anything else rolls back. Returns
  // the result, or 0 when the commit itself failed (then nothing is kept).
  int Finish(int result);

 private:
  bool joined_ = false;
  bool outermost_ = false;
  bool finished_ = false;
};

// False while a transaction could not begin (another process is writing):
// row writes then refuse instead of committing one by one.
bool OrvikWritesAllowed();

// Runs operation (which returns an engine result) as one transaction.
template <class Operation>
int Transacted(Operation&& operation) {
  OrvikTransaction transaction;
  return transaction.Finish(operation());
}

}  // namespace qv

#endif  // QUORVEX_ORVIK_TRANSACTION_H_

unit Notes;
{ don't TQuery
 TQuery }
/// TQuery stays
// TQuery changes
(*$R TQuery.dfm*)
(* TQuery *)
{{ TQuery }
{ (*TQuery*) TTable }
{ see http://TQuery.example
  TTable }
{$IFDEF TQuery}
{$R TQuery.dfm}
{ 'TQuery' TDatabase dbtables }
{TQuery}
{ TQueryHelper, xTQuery, TQuery2, TQuery_, 2TQuery, T Query }
interface
const Quote = ''''; { TTable }
const S = 'It''s TQuery'; // 'TQuery' TTable
const Bad = 'TQuery
implementation
end. TQuery
{ never closed TQuery

object Form1: TForm1
  Caption = 'ボ表'
  Hint = ボ
    object Q: TKVAQuery
    Filter = 'マ表'
    AutoCommit = True
  end
end

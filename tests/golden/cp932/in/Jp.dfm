object Form1: TForm1
  Caption = 'ボ表'
  Hint = ボ
  object Q: TQuery
    Filter = 'マ表'
  end
end
